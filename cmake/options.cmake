# zt_options: what every target of this project is compiled with.
add_library(zt_options INTERFACE)

if(MSVC)
  target_compile_options(zt_options INTERFACE /W4 /WX /permissive- /utf-8 /Zc:__cplusplus /EHsc /guard:cf)
  target_link_options(zt_options INTERFACE /guard:cf)
else()
  target_compile_options(zt_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Wimplicit-fallthrough -Werror
    -ffunction-sections -fdata-sections
    # __FILE__ must not carry the builder's folders into the program.
    -fmacro-prefix-map=${CMAKE_SOURCE_DIR}/=)
endif()

if(ZT_SANITIZE)
  target_compile_options(zt_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zt_options INTERFACE -fsanitize=address,undefined)
endif()

if(WIN32)
  # 0x0601: Windows 7 is the oldest system that the manifest names.
  target_compile_definitions(zt_options INTERFACE
    UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX _WIN32_WINNT=0x0601 WINVER=0x0601)
  if(NOT MSVC)
    # -municode is left to the programs; everything is linked in, so that no redistributable is needed. Without the time
    # of the build: the same sources give the same bytes.
    target_link_options(zt_options INTERFACE -static -Wl,--gc-sections -Wl,--no-insert-timestamp)
    # The 16 bytes within each std::string don't count as a buffer, or every function had the check: 28 KB of ZT.exe. The
    # linker takes libssp for the same option, in programs without zt_guard_stack. UNGUARDED is what others link.
    target_compile_options(zt_options INTERFACE
      $<$<NOT:$<BOOL:$<TARGET_PROPERTY:UNGUARDED>>>:-fstack-protector;--param=ssp-buffer-size=17>)
    target_link_options(zt_options INTERFACE -fstack-protector)
    # With it, each source has its own versions of the same functions of std::string; together 30 KB of ZT.exe.
    target_compile_options(zt_options INTERFACE -fno-ipa-sra)
  endif()
endif()

# zt_guard_stack(TARGET): a program or DLL with a stack guard that costs nothing at its start.
function(zt_guard_stack target)
  if(MINGW)
    target_sources(${target} PRIVATE ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/StackGuard_mingw.cpp)
  endif()
endfunction()
