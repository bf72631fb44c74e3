# What is shipped has no debug symbols; they are in a file of their own, <name>.debug, which debuggers find through the
# link in the shipped file.
if(MINGW)
  add_compile_options("$<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:-g1>")
endif()

# wattleaf_split_symbols(<target>): after each link. With MSVC the linker writes a .pdb file.
function(wattleaf_split_symbols target)
  if(NOT MINGW)
    return()
  endif()
  set(file "$<TARGET_FILE:${target}>")
  # These programs would write the current time into the header.
  set(without_time "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=0)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${without_time} "${CMAKE_OBJCOPY}" --only-keep-debug "${file}" "${file}.debug"
    COMMAND ${without_time} "${CMAKE_STRIP}" "${file}"
    COMMAND ${without_time} "${CMAKE_OBJCOPY}" "--add-gnu-debuglink=${file}.debug" "${file}"
    VERBATIM)
endfunction()
