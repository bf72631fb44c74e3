# Configures the examples of the installed PACKAGE against it, builds them, and runs the client of the security layer beside
# the libraries of the package and the Logging.dll of the examples. Takes only the toolchain from this build, and
# RUNTIME, an option for CMake, if the toolchain needs it.
function(run what)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${what} failed (${status}):\n${output}${errors}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK}")
run("Configuring" "${CMAKE_COMMAND}" -S "${PACKAGE}/share/WattleafService/examples" -B "${WORK}" -G "${GENERATOR}"
  "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}" "-DCMAKE_PREFIX_PATH=${PACKAGE}"
  -DCMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS_RELEASE=${FLAGS}" ${RUNTIME})
run("Building" "${CMAKE_COMMAND}" --build "${WORK}")
set(folder "${WORK}/bin")
file(GLOB libraries "${PACKAGE}/bin/*.dll")
file(COPY ${libraries} DESTINATION "${folder}")

# expect(<whether the service would load the file> <whether its place is allowed> [<file>])
function(expect trusted allowed)
  run("The example" "${EMULATOR}" "${PREFIX}" "${folder}/access_client.exe" ${ARGN})
  string(REPLACE "\r" "" output "${output}")
  set(wanted "Store client ZQLumenGuard 2.0 is exempt: yes
Store client ZQLumenGuard 2.1 is exempt: no
program LatchWardenUWP 8.9 is exempt: yes
program LatchWardenUWP 8.10 is exempt: no
a program is exempt by a checker that exempts no client: no
without a checker for store clients: The Behavior was not defined. A call to SetUwpChecker must be done.
without a checker for programs: The Behavior was not defined. A call to SetWin32Checker must be done.
the file is one that the service would load: ${trusted}
its place is allowed: ${allowed}
a client may start sfc.exe: no
disk1 passes the rule regex: yes
disk12 passes it: no
a file of a listed folder passes the rule begins_with_from_list: yes
a file that climbs out of it passes it: no
a parameter that is not there passes the rule none: yes
figures can be expected in this process: no
")
  if(NOT output STREQUAL wanted)
    message(SEND_ERROR "The example wrote\n${output}\ninstead of\n${wanted}")
  endif()
endfunction()

# The example itself: unsigned, in a folder of the user.
expect(no no)
if(KEYS STREQUAL "development")
  expect(yes yes "${TRUSTED_FILE}")
else()
  expect(no yes "${TRUSTED_FILE}")
endif()

# expect_rule(<answer> <expression> <value>): whether the value passes, by the installed library.
function(expect_rule wanted expression value)
  run("The example" "${EMULATOR}" "${PREFIX}" "${folder}/access_client.exe" rule regex "${expression}" "${value}")
  string(STRIP "${output}" answer)
  if(NOT answer STREQUAL wanted)
    message(SEND_ERROR "\"${value}\" passes \"${expression}\": ${answer} instead of ${wanted}")
  endif()
endfunction()

set(host_name [[(?:[a-z0-9](?:[a-z0-9-]{0,61}[a-z0-9])?\.){1,126}[a-z]{2,63}]])
string(REPEAT "x" 6000 letters)
set(words "word1")
foreach(number RANGE 2 1300)
  string(APPEND words "|word${number}")
endforeach()

expect_rule(yes [[\d+(?:,\d+){0,499}]] "1,2,3")
expect_rule(no [[\d+(?:,\d+){0,499}]] "1,2,")
expect_rule(yes "${host_name}" "www.example.com")
expect_rule(no "${host_name}" "www.-example.com")
expect_rule(yes "${words}" "word1")
expect_rule(yes "${words}" "word1300")
expect_rule(no "${words}" "word1301")
expect_rule(yes ".{0,10000}" "abc")
expect_rule(yes "[^<>]{0,9000}" "${letters}")
expect_rule(no "[^<>]{0,9000}" "${letters}<")
expect_rule(no [[foo(?=\bbar)bar]] "foobar")
expect_rule(yes [[foo(?=bar\b)bar]] "foobar")
expect_rule(no "a(?=^b)b" "ab")
expect_rule(no "(a+)+b" "${letters}")

# The library with the supplied keys does not trust the file of the development build.
if(SUPPLIED)
  set(copy "${WORK}/supplied")
  file(COPY "${folder}/" DESTINATION "${copy}")
  file(COPY_FILE "${SUPPLIED}" "${copy}/WattleafService.dll")
  set(folder "${copy}")
  expect(no no)
  expect(no yes "${TRUSTED_FILE}")
endif()
