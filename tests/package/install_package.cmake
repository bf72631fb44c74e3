# Installs BUILD into the empty folder PACKAGE and checks what was installed. SCHEMAS is their folder in the source.
file(REMOVE_RECURSE "${PACKAGE}")
execute_process(COMMAND "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${PACKAGE}" --config "${CONFIG}"
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "cmake --install failed:\n${output}")
endif()

foreach(wanted lib/WattleafService.dll.a
    lib/cmake/WattleafService/WattleafServiceConfig.cmake
    lib/cmake/WattleafService/WattleafServiceConfigVersion.cmake)
  if(NOT EXISTS "${PACKAGE}/${wanted}")
    message(SEND_ERROR "The package has no ${wanted}.")
  endif()
endforeach()

# The library and the C++ runtime that it shares with its callers.
set(wanted WattleafService.dll libgcc_s_seh-1.dll libstdc++-6.dll libwinpthread-1.dll)
file(GLOB programs RELATIVE "${PACKAGE}/bin" "${PACKAGE}/bin/*")
list(SORT programs)
if(NOT programs STREQUAL wanted)
  message(SEND_ERROR "The package's bin holds \"${programs}\" instead of \"${wanted}\".")
endif()

# Exactly the headers of what the library shares, and those that they include.
set(wanted
  abi/value_shapes.h
  abi/xml_shapes.h
  platform/win32/unique_resource.h
  platform/winrt/runtime_reference.h
  platform/winrt/runtime_text.h
  security/access/access_manager.h
  security/access/client_information.h
  security/access/client_manifest_criteria.h
  security/access/exemption_white_lists.h
  security/access/manifest_exemption.h
  security/access/rpc_security_helper.h
  security/access/rule_validators.h
  security/access/tool_launch_table.h
  security/facade/zq_authenticode_facade.h
  security/trust/signer_descriptor.h
  security/trust/util_helper.h
  security/trust/zq_authenticode_helper.h
  service/zq_service.h
  wattleaf_export.h)
set(include "${PACKAGE}/include/WattleafService")
file(GLOB_RECURSE headers RELATIVE "${include}" "${include}/*")
list(SORT headers)
if(NOT headers STREQUAL wanted)
  message(SEND_ERROR "The package has the headers\n${headers}\ninstead of\n${wanted}")
endif()

file(GLOB wanted RELATIVE "${SCHEMAS}" "${SCHEMAS}/*.json")
file(GLOB schemas RELATIVE "${PACKAGE}/share/WattleafService/schemas" "${PACKAGE}/share/WattleafService/schemas/*")
if(NOT wanted OR NOT schemas STREQUAL wanted)
  message(SEND_ERROR "The package has the schemas \"${schemas}\" instead of \"${wanted}\".")
endif()

file(GLOB folders RELATIVE "${PACKAGE}" "${PACKAGE}/*")
if(NOT folders STREQUAL "bin;include;lib;share")
  message(SEND_ERROR "The package holds \"${folders}\" instead of bin, include, lib and share alone.")
endif()
