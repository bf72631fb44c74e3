# Runs the smallest host of the examples, which contract.package-examples built in FOLDER, on the simulated notebook. With
# the environment variable WATTLEAF_REAL_TIME it runs beside the collector and waits for a pass: 90 seconds and more.
function(run_host)
  file(REMOVE "${FOLDER}/WattleafService.log")
  execute_process(COMMAND "${EMULATOR}" "${PREFIX}" "${FOLDER}/minimal_host.exe" ${ARGN}
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  string(REPLACE "\r" "" output "${output}")
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "The host failed (${status}):\n${output}${errors}")
  endif()
  file(READ "${FOLDER}/WattleafService.log" log)
  string(REPLACE "\r" "" log "${log}")
  set(log "${log}" PARENT_SCOPE)
  set(output "${output}" PARENT_SCOPE)
endfunction()

# expect_output(<expression before the answers> <for command 1> <for command 2> <for command 10>): the whole output.
function(expect_output before average ranking available)
  set(wanted "^${before} 1 ${average}
 2 ${ranking}
 3 [0-9.]+
 4 {\"Range\":\\[.*\\],\"Value\":\\[.*\\]}
 5 {\"Range\":\\[.*\\],\"Value\":\\[.*\\]}
 6 {\"Range\":\\[.*\\],\"Value\":\\[.*\\]}
 7 1
 8 true
 9 \\[\\]
10 ${available}
$")
  if(NOT output MATCHES "${wanted}")
    message(FATAL_ERROR "The host wrote\n${output}")
  endif()
endfunction()

# expect_log(<text>...): lines of the log of the examples' Logging.dll.
function(expect_log)
  foreach(line IN LISTS ARGN)
    string(FIND "\n${log}" "\n${line}\n" at)
    if(at EQUAL -1)
      message(FATAL_ERROR "The log lacks \"${line}\":\n${log}")
    endif()
  endforeach()
endfunction()

# Before the worker has begun: an empty ledger, and no figures can be expected yet. A store may exist.
run_host()
expect_output("" "0[.]000000" "(\\[.*\\])?" false)
expect_log("info [] WattleafService::StartSession" "info [] WattleafService::EndSession")

# Without a Logging.dll the library does not load.
set(without "${FOLDER}-without-log")
file(REMOVE_RECURSE "${without}")
file(COPY "${FOLDER}/" DESTINATION "${without}" PATTERN Logging.dll EXCLUDE)
execute_process(COMMAND "${EMULATOR}" "${PREFIX}" "${without}/minimal_host.exe"
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_QUIET)
if(NOT status EQUAL 1 OR NOT output MATCHES "^The library cannot be loaded: error 126\r?\n$")
  message(FATAL_ERROR "Without a Logging.dll the host ended with ${status}:\n${output}")
endif()

if(DEFINED ENV{WATTLEAF_REAL_TIME})
  set(home "${PREFIX}/drive_c/Program Files/Wattleaf example")
  file(REMOVE_RECURSE "${home}")
  file(COPY "${FOLDER}/" DESTINATION "${home}")
  file(COPY "${COLLECTOR}" DESTINATION "${home}")
  set(FOLDER "${home}")
  # A new machine.
  file(REMOVE_RECURSE "${PREFIX}/drive_c/ProgramData/ZQ")
  run_host(240)
  # The library's own lines come first.
  set(time ":[0-9]+:[0-9]+:[0-9]+ [0-9]+-[0-9]+-[0-9]+")
  expect_output("XML parsing started at ${time}\nXML parsing completed ${time}\n" "[1-9][0-9.]+" "\\[{\"Name\":.*\\]" true)
  expect_log("info [] Loaded DataCollector library " "info [] DataCollector StartCollecting() success  ")
  file(GLOB icons "${home}/Icons/*.png")
  if(NOT icons)
    message(FATAL_ERROR "The host has no icons.")
  endif()
  message(STATUS "After a pass the host wrote\n${output}")
endif()
