# The desktop programs of the simulated notebook as real executables: bin/drive_c mirrors drive C:.
# The build makes icons and resource scripts, named by the program's number in the list.
enable_language(RC)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(resources "${CMAKE_CURRENT_BINARY_DIR}/resources")
# A program that was removed is not built.
file(STRINGS "${folder}/desktop_apps.txt" lines REGEX "^[^#].*[|]here$" ENCODING UTF-8)
set(made "")
set(programs "")
set(number 0)
add_library(desktop_program OBJECT desktop_program.cpp)
target_link_libraries(desktop_program PUBLIC wattleaf_flags wattleaf_standalone)

foreach(line IN LISTS lines)
  math(EXPR number "${number} + 1")
  string(REGEX REPLACE "[|].*$" "" path "${line}")
  string(REPLACE "\\" "/" path "${path}")
  get_filename_component(place "${path}" DIRECTORY)
  get_filename_component(stem "${path}" NAME_WLE)
  set(program "notebook_program_${number}")
  list(APPEND made "${resources}/${number}.rc" "${resources}/${number}.ico")
  list(APPEND programs "${program}")

  add_executable(${program} "${resources}/${number}.rc")
  set_source_files_properties("${resources}/${number}.rc" PROPERTIES
    OBJECT_DEPENDS "${resources}/${number}.ico")
  set_target_properties(${program} PROPERTIES
    OUTPUT_NAME "${stem}" LINKER_LANGUAGE CXX
    RUNTIME_OUTPUT_DIRECTORY "$<1:${CMAKE_BINARY_DIR}/bin/drive_c/${place}>")
  target_link_libraries(${program} PRIVATE desktop_program)
endforeach()

add_custom_command(OUTPUT ${made}
  COMMAND Python3::Interpreter -B
    "${folder}/program_resources.py" "${folder}/desktop_apps.txt" "${resources}"
  DEPENDS "${folder}/desktop_apps.txt" "${folder}/icon_file.py" "${folder}/program_resources.py"
  COMMENT "Resources of the simulated notebook's programs")
add_custom_target(notebook_resources DEPENDS ${made})
foreach(program IN LISTS programs)
  add_dependencies(${program} notebook_resources)
endforeach()

add_executable(notebook_setup notebook_setup.cpp)
target_link_libraries(notebook_setup PRIVATE wattleaf_notebook wattleaf_core advapi32)
add_custom_target(notebook_programs ALL DEPENDS ${programs} notebook_setup)
