# The Debian package of the SNMP library: `cpack` in the build tree of the preset linux.
install(FILES LICENSE DESTINATION share/doc/libztsnmp-dev RENAME copyright COMPONENT debian)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME libztsnmp-dev)
set(CPACK_PACKAGE_CONTACT "The TOVAgent authors <tovagent@velnora.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "SNMPv1 manager library")
set(CPACK_PACKAGE_DESCRIPTION "Get, get-next, set, discovery and traps of SNMPv1, as C++20 classes: headers, shared and static\
 library, CMake package and pkg-config files.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_CMAKE_PROJECTS
  "${CMAKE_BINARY_DIR};${PROJECT_NAME};ztsnmp;/" "${CMAKE_BINARY_DIR};${PROJECT_NAME};debian;/")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
