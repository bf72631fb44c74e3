# The same sources become the same bytes in any folder and at any time, so that anyone can check a shipped file by building
# it again (tools/check-reproducible). Included before the first target.
if(NOT MINGW)
  return()
endif()
add_link_options(-Wl,--no-insert-timestamp)

# Folders appear in texts of assertions and in line tables. Only in what is shipped: while one works, a debugger needs the
# real ones.
set(map_folders "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=." "-ffile-prefix-map=${CMAKE_BINARY_DIR}=build")
add_compile_options("$<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:${map_folders}>")
