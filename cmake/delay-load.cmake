# zt_delay_load(TARGET DLL...): the program loads these libraries of the system when it first calls them, not when it
# starts. Most starts end before they need any. The program may define the hooks of the delay-load helper.
function(zt_delay_load target)
  if(MSVC)
    foreach(dll IN LISTS ARGN)
      target_link_options(${target} PRIVATE /DELAYLOAD:${dll})
    endforeach()
    target_link_libraries(${target} PRIVATE delayimp)
    return()
  endif()
  # Import libraries of the same names in a folder that is searched first. The functions are those of the import library
  # that they take the place of.
  set(folder ${CMAKE_BINARY_DIR}/delay-load)
  foreach(dll IN LISTS ARGN)
    get_filename_component(name ${dll} NAME_WLE)
    string(TOLOWER ${name} name)
    set(library ${folder}/lib${name}.a)
    if(NOT EXISTS ${library})
      execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=lib${name}.a
        OUTPUT_VARIABLE original OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
      execute_process(COMMAND ${CMAKE_NM} ${original} OUTPUT_VARIABLE symbols ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
      string(REGEX MATCHALL "I __imp_[A-Za-z0-9_]+" functions "${symbols}")
      list(TRANSFORM functions REPLACE "I __imp_" "  ")
      list(JOIN functions "\n" functions)
      file(WRITE ${folder}/${name}.def "LIBRARY ${dll}\nEXPORTS\n${functions}\n")
      execute_process(COMMAND ${CMAKE_DLLTOOL} --input-def ${name}.def --output-delaylib lib${name}.a
        WORKING_DIRECTORY ${folder} COMMAND_ERROR_IS_FATAL ANY)
    endif()
  endforeach()
  target_link_directories(${target} BEFORE PRIVATE ${folder})
endfunction()
