# wattleaf_import_library(<target> <def>): an import library for functions that the toolchain's own import
# libraries lack, so that the calls appear in the import table. Empty with MSVC, whose SDK has them all.
function(wattleaf_import_library target def)
  add_library(${target} INTERFACE)
  if(NOT MINGW)
    return()
  endif()
  set(folder "${CMAKE_BINARY_DIR}/lib")
  set(library "${folder}/lib${target}.a")
  file(MAKE_DIRECTORY "${folder}")
  # By its bare name, because the tool makes symbols of the name as it is given.
  add_custom_command(OUTPUT "${library}"
    COMMAND "${CMAKE_DLLTOOL}" -k -d "${CMAKE_CURRENT_SOURCE_DIR}/${def}" -l "lib${target}.a"
    DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/${def}" WORKING_DIRECTORY "${folder}" VERBATIM)
  add_custom_target(${target}_file DEPENDS "${library}")
  add_dependencies(${target} ${target}_file)
  target_link_libraries(${target} INTERFACE "${library}")
endfunction()
