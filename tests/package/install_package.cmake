# Installs BUILD into the empty folder PACKAGE and looks at what came.
file(REMOVE_RECURSE "${PACKAGE}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${PACKAGE}" --config "${CONFIG}"
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cmake --install failed:\n${output}")
endif()

foreach(wanted bin/WattleafService.dll lib/WattleafService.dll.a
    lib/cmake/WattleafService/WattleafServiceConfig.cmake
    lib/cmake/WattleafService/WattleafServiceConfigVersion.cmake
    include/WattleafService/export.h
    include/WattleafService/security/access/access_manager.h
    include/WattleafService/security/trust/zq_authenticode_facade.h)
  if(NOT EXISTS "${PACKAGE}/${wanted}")
    message(SEND_ERROR "The package has no ${wanted}.")
  endif()
endforeach()

file(GLOB rooms RELATIVE "${PACKAGE}" "${PACKAGE}/*")
if(NOT rooms STREQUAL "bin;include;lib")
  message(SEND_ERROR "The package holds \"${rooms}\" and not bin, include and lib alone.")
endif()
