# Configures the project with BUILD_TESTING=OFF and checks that the build has none of the targets of tests/,
# fuzz/ and bench/ and does not know GoogleTest, but still has what is shipped:
#   cmake -DSOURCE=... -DBUILD=<a build with tests> -DWORK=<new folder> -DPROGRAM=<ninja> -DWANTED=<targets>
#         "-DOPTIONS=<options of the configuration>" "-DSAYS=<a line that the configuration prints, or nothing>"
#         -P build_without_tests.cmake
foreach(name SOURCE BUILD WORK PROGRAM WANTED SAYS)
  if(NOT DEFINED ${name})
    message(FATAL_ERROR "${name} is not given.")
  endif()
endforeach()

# Sets <out> to the targets of the folders that a build without tests leaves out.
function(test_targets out build)
  execute_process(COMMAND "${PROGRAM}" -C "${build}" -t targets all
    OUTPUT_VARIABLE targets ERROR_VARIABLE errors RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "Cannot list the targets of ${build}:\n${errors}")
  endif()
  string(REGEX MATCHALL "\n(tests|fuzz|bench|googletest)/[^:\n]*" found "\n${targets}")
  set(${out} "${found}" PARENT_SCOPE)
endfunction()

test_targets(with_tests "${BUILD}")
if(NOT with_tests)
  message(FATAL_ERROR "${BUILD} has no targets of tests, so this check would not notice any.")
endif()

file(REMOVE_RECURSE "${WORK}")
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}" -G Ninja "-DCMAKE_MAKE_PROGRAM=${PROGRAM}"
    -DBUILD_TESTING=OFF ${OPTIONS}
  OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "Cannot configure without tests:\n${output}")
endif()
string(FIND "\n${output}" "\n${SAYS}" said)
if(said EQUAL -1)
  message(FATAL_ERROR "The configuration does not say \"${SAYS}\":\n${output}")
endif()
test_targets(without_tests "${WORK}")
if(without_tests)
  message(FATAL_ERROR "BUILD_TESTING=OFF does not leave out: ${without_tests}")
endif()
if(EXISTS "${WORK}/CTestTestfile.cmake")
  message(FATAL_ERROR "BUILD_TESTING=OFF does not leave out the tests of CTest.")
endif()

# A dry run: each step has its inputs.
execute_process(COMMAND "${PROGRAM}" -C "${WORK}" -n ${WANTED}
  OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "Without tests, these cannot be built: ${WANTED}\n${output}")
endif()
