# Configures SOURCE against the installed PACKAGE, with the toolchain of this build and nothing else of
# it, builds it, and runs it beside the libraries of the package and a simulated Logging.dll.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed (${status}):\n${output}${errors}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK}")
run("Configuring" "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}" -G "${GENERATOR}"
  "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}" "-DCMAKE_PREFIX_PATH=${PACKAGE}"
  "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Werror" -DCMAKE_BUILD_TYPE=Release)
run("Building" "${CMAKE_COMMAND}" --build "${WORK}")
file(GLOB libraries "${PACKAGE}/bin/*.dll")
file(COPY ${libraries} "${LOGGING}" DESTINATION "${WORK}")

# expect(<answer to the last two questions about the file> <file>...)
function(expect trusted protected)
  run("The example" "${EMULATOR}" "${PREFIX}" "${WORK}/access_client.exe" ${ARGN})
  string(REPLACE "\r" "" output "${output}")
  set(wanted "Store client ZQLumenGuard 2.0 is exempt: yes
Store client ZQLumenGuard 2.1 is exempt: no
program LatchWardenUWP 8.9 is exempt: yes
program LatchWardenUWP 8.10 is exempt: no
a program is exempt where nobody is: no
without a checker for store clients: The Behavior was not defined. A call to SetUwpChecker must be done.
without a checker for programs: The Behavior was not defined. A call to SetWin32Checker must be done.
the file is one that the service would load: ${trusted}
its place is allowed: ${protected}
a client may start sfc.exe: no
disk1 passes the rule regex: yes
disk12 passes it: no
a file of a listed folder passes the rule begins_with_from_list: yes
a file that climbs out of it passes it: no
a parameter that is not there passes the rule none: yes
")
  if(NOT output STREQUAL wanted)
    message(SEND_ERROR "The example wrote\n${output}\ninstead of\n${wanted}")
  endif()
endfunction()

# Itself: unsigned, in a folder of the user's.
expect(no no)
if(KEYS STREQUAL "development")
  expect(yes yes "${JUDGED}")
else()
  expect(no yes "${JUDGED}")
endif()
