# The desktop programs of the simulated notebook as real executables: bin/notebook mirrors
# C:\Program Files. Icons and resource scripts are made by the build.
enable_language(RC)
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(resources "${CMAKE_CURRENT_BINARY_DIR}/resources")
file(STRINGS "${folder}/desktop_apps.txt" lines REGEX "^[^#]")
set(made "")
set(programs "")
add_library(desktop_program OBJECT desktop_program.cpp)
target_link_libraries(desktop_program PUBLIC wattleaf_flags)

foreach(line IN LISTS lines)
  string(REGEX REPLACE "^([^\\]*)\\\\([^|]*)\\.exe\\|.*$" "\\1;\\2" place "${line}")
  list(GET place 0 place_folder)
  list(GET place 1 stem)
  list(APPEND made "${resources}/${stem}.rc" "${resources}/${stem}.ico")
  list(APPEND programs "notebook_${stem}")

  add_executable(notebook_${stem} "${resources}/${stem}.rc")
  set_source_files_properties("${resources}/${stem}.rc" PROPERTIES
    OBJECT_DEPENDS "${resources}/${stem}.ico")
  set_target_properties(notebook_${stem} PROPERTIES
    OUTPUT_NAME "${stem}" LINKER_LANGUAGE CXX
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin/notebook/${place_folder}")
  target_link_libraries(notebook_${stem} PRIVATE desktop_program)
endforeach()

add_custom_command(OUTPUT ${made}
  COMMAND Python3::Interpreter "${folder}/program_resources.py" "${folder}/desktop_apps.txt" "${resources}"
  DEPENDS "${folder}/desktop_apps.txt" "${folder}/icon_file.py" "${folder}/program_resources.py"
  COMMENT "Resources of the simulated notebook's programs")
add_custom_target(notebook_resources DEPENDS ${made})
foreach(program IN LISTS programs)
  add_dependencies(${program} notebook_resources)
endforeach()

add_executable(notebook_setup notebook_setup.cpp)
target_include_directories(notebook_setup PRIVATE "${CMAKE_SOURCE_DIR}/src")
target_link_libraries(notebook_setup PRIVATE wattleaf_notebook advapi32)
add_custom_target(notebook_programs ALL DEPENDS ${programs} notebook_setup)
