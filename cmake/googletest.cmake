# GoogleTest from Debian's sources (package googletest), built with the compiler of this build tree.
set(ZT_GOOGLETEST_SOURCE_DIR "/usr/src/googletest" CACHE PATH "GoogleTest sources")
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK ON CACHE BOOL "" FORCE)
add_subdirectory("${ZT_GOOGLETEST_SOURCE_DIR}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
include(GoogleTest)
