# TinyXML-2: an installed CMake package where there is one (Debian's libtinyxml2-dev, vcpkg), else built
# from the sources that tools/fetch-tinyxml2.sh lays out.
find_package(tinyxml2 CONFIG QUIET)
if(NOT tinyxml2_FOUND)
  set(ZT_TINYXML2_SOURCE_DIR "${CMAKE_SOURCE_DIR}/build/deps/tinyxml2" CACHE PATH
      "TinyXML-2 sources (tools/fetch-tinyxml2.sh)")
  if(NOT EXISTS "${ZT_TINYXML2_SOURCE_DIR}/tinyxml2.cpp")
    message(FATAL_ERROR "No tinyxml2 package and no sources in ${ZT_TINYXML2_SOURCE_DIR}: run tools/fetch-tinyxml2.sh")
  endif()
  add_library(tinyxml2 STATIC "${ZT_TINYXML2_SOURCE_DIR}/tinyxml2.cpp")
  target_include_directories(tinyxml2 SYSTEM PUBLIC "${ZT_TINYXML2_SOURCE_DIR}")
  if(MINGW)
    # With -flto: the linker keeps every function that has unwind information,
    # called or not; of this library a third is called.
    target_compile_options(tinyxml2 PRIVATE -Os -flto -include "${CMAKE_CURRENT_LIST_DIR}/tinyxml2_mingw.h")
  endif()
  add_library(tinyxml2::tinyxml2 ALIAS tinyxml2)
endif()
