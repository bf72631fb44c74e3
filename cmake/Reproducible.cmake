# The same sources become the same bytes in any folder and at any time, so that anyone can check a shipped file by building
# it again (tools/check-reproducible). Included before the first target.
if(NOT MINGW)
  return()
endif()
add_link_options(-Wl,--no-insert-timestamp)

# Folders appear in texts of assertions and in line tables. Only in what is shipped: while one works, a debugger needs the
# real ones. WATTLEAF_FOLDER_OPTIONS replaces the folder <folder> in what the compiler writes.
set(WATTLEAF_FOLDER_OPTIONS "-ffile-prefix-map=<folder>=.")
set(map_folders "")
foreach(folder "${CMAKE_SOURCE_DIR}" "${CMAKE_BINARY_DIR}")
  string(REPLACE "<folder>" "${folder}" option "${WATTLEAF_FOLDER_OPTIONS}")
  list(APPEND map_folders "${option}")
endforeach()
add_compile_options("$<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:${map_folders}>")
