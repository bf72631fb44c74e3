# One shared C++ runtime for the library and its callers, because classes, strings and exceptions cross the
# library's boundary. With a separate copy in each, the caller's std::uncaught_exceptions() is -1 after
# the first exception that it caught from the library.
#
# Programs that exchange no C++ objects with the library and are copied elsewhere link
# wattleaf_standalone, which links the runtime statically.
add_library(wattleaf_standalone INTERFACE)
set(WATTLEAF_RUNTIME_FILES "")
if(NOT MINGW)
  return()
endif()
target_link_options(wattleaf_standalone INTERFACE -static)

# Copies the compiler's three runtime libraries, without debugging information, beside the programs of the
# build.
foreach(name libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${name}"
    OUTPUT_VARIABLE source OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  if(NOT IS_ABSOLUTE "${source}" OR NOT EXISTS "${source}")
    message(FATAL_ERROR "${CMAKE_CXX_COMPILER} has no ${name}: the shared C++ runtime is missing.")
  endif()
  set(file "${CMAKE_BINARY_DIR}/bin/${name}")
  list(APPEND WATTLEAF_RUNTIME_FILES "${file}")
  if("${source}" IS_NEWER_THAN "${file}" OR "${CMAKE_CURRENT_LIST_FILE}" IS_NEWER_THAN "${file}")
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
    # The program would write the current time into the header.
    execute_process(COMMAND "${CMAKE_COMMAND}" -E env SOURCE_DATE_EPOCH=0 "${CMAKE_STRIP}" -o "${file}" "${source}"
      COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
