# The installed CMake package refuses compilers for another system, and says why:
#   cmake -DPACKAGE=... -DWORK=... -P check_refusals.cmake
cmake_minimum_required(VERSION 3.25)

# expect(<message> [<variable> <value>]...): what the configuration says to a build with these variables.
function(expect wanted)
  set(CMAKE_FIND_PACKAGE_NAME WattleafService)
  set(CMAKE_CXX_COMPILER_LOADED 1)
  set(CMAKE_SYSTEM_NAME Windows)
  set(CMAKE_SIZEOF_VOID_P 8)
  set(MINGW 1)
  while(ARGN)
    list(POP_FRONT ARGN name value)
    set(${name} "${value}")
  endwhile()
  include("${PACKAGE}/lib/cmake/WattleafService/WattleafServiceConfig.cmake")
  if(NOT DEFINED WattleafService_FOUND OR WattleafService_FOUND)
    message(FATAL_ERROR "Not refused: ${ARGV}")
  endif()
  set(wanted "This package is for programs that a compiler with the ABI of mingw-w64 builds for Windows x64, but ${wanted}.")
  if(NOT WattleafService_NOT_FOUND_MESSAGE STREQUAL wanted)
    message(FATAL_ERROR "The message is \"${WattleafService_NOT_FOUND_MESSAGE}\" instead of \"${wanted}\".")
  endif()
endfunction()

expect("enable the language CXX before find_package" CMAKE_CXX_COMPILER_LOADED "")
expect("this build is for Darwin" CMAKE_SYSTEM_NAME Darwin MINGW "")
expect("this build is for 32 bits" CMAKE_SIZEOF_VOID_P 4)
expect("the ABI of this build's compiler is that of MSVC" MINGW "" MSVC 1)
expect("the ABI of this build's compiler is that of MSVC" MINGW "" CMAKE_CXX_SIMULATE_ID MSVC)
expect("the ABI of this build's compiler is that of Clang" MINGW "" CMAKE_CXX_COMPILER_ID Clang)

# A whole configuration, by the compiler of this machine.
file(REMOVE_RECURSE "${WORK}")
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${PACKAGE}/share/WattleafService/examples/host" -B "${WORK}"
    "-DCMAKE_PREFIX_PATH=${PACKAGE}"
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
string(REGEX REPLACE "[ \n]+" " " output "${output}")
if(status EQUAL 0 OR NOT output MATCHES "this build is for Linux[.]")
  message(FATAL_ERROR "Configuring for Linux ended with ${status}:\n${output}")
endif()
