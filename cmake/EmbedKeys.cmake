# Checks the trusted public keys of keys/ and writes them to a header in the build folder. With
# WATTLEAF_KEYS=development, the development key replaces the service key.
include(KeyLists)
include(KeyNotice)
include(Signing)

set(WATTLEAF_KEY_FOLDER "${CMAKE_SOURCE_DIR}/keys" CACHE PATH "The folder of the key lists")
set(WATTLEAF_GENERATED "${CMAKE_BINARY_DIR}/generated")
foreach(list public_key_pool single_key_list second_key_list service_key)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${WATTLEAF_KEY_FOLDER}/${list}.txt")
endforeach()
wattleaf_read_all_key_lists("${WATTLEAF_KEY_FOLDER}")

# Sets <out> to the definition of a constant array with the texts of the list, in its order.
function(wattleaf_key_array out name prefix)
  list(LENGTH ${prefix}_TEXTS count)
  set(rows "")
  foreach(text IN LISTS ${prefix}_TEXTS)
    string(APPEND rows "    \"${text}\",\n")
  endforeach()
  set(${out} "inline constexpr std::array<std::string_view, ${count}> ${name} = {\n${rows}};\n" PARENT_SCOPE)
endfunction()

# wattleaf_write_keys(<folder> supplied|development): writes the lists as they are now to embedded_keys.h in the folder,
# and the notice about them to key_notice.h. Sets WATTLEAF_KEY_NOTICE to the notice.
function(wattleaf_write_keys folder kind)
  wattleaf_key_array(pool_array kPublicKeyPoolTexts POOL)
  wattleaf_key_array(single_array kSingleKeyListTexts SINGLE)
  wattleaf_key_array(second_array kSecondKeyListTexts SECOND)
  wattleaf_key_array(service_array kServiceKeyTexts SERVICE)
  file(CONFIGURE OUTPUT "${folder}/embedded_keys.h" @ONLY CONTENT [[
#pragma once

// Written by the build from the key lists; do not edit.

#include <array>
#include <string_view>

namespace Zq::Gantry::Security {

@service_array@
@pool_array@
@single_array@
@second_array@
}  // namespace Zq::Gantry::Security
]])

  wattleaf_key_notice(notice ${kind} ${POOL_TEXTS} ${SINGLE_TEXTS} ${SECOND_TEXTS} ${SERVICE_TEXTS})
  set(definition "")
  if(notice)
    set(definition "\n#define WATTLEAF_KEY_NOTICE \"${notice}\"\n")
  endif()
  file(CONFIGURE OUTPUT "${folder}/key_notice.h" @ONLY CONTENT
    "// Written by the build for the version resource; defines nothing if all keys are an operator's own.\n@definition@")
  set(WATTLEAF_KEY_NOTICE "${notice}" PARENT_SCOPE)
endfunction()

wattleaf_write_keys("${WATTLEAF_GENERATED}/supplied" supplied)
if(WATTLEAF_KEYS STREQUAL "development")
  if(NOT WATTLEAF_CAN_SIGN OR NOT WIN32)
    message(FATAL_ERROR "WATTLEAF_KEYS=development needs a build for Windows on a Unix machine with openssl and osslsigncode.")
  endif()
  wattleaf_read_key_list(SERVICE FILE "${WATTLEAF_DEVELOPMENT_KEY}/public_key.txt" COUNT 1)
  wattleaf_check_key_repetition(POOL SINGLE SECOND SERVICE)
elseif(NOT WATTLEAF_KEYS STREQUAL "supplied")
  message(FATAL_ERROR "WATTLEAF_KEYS is \"${WATTLEAF_KEYS}\", but must be supplied or development.")
endif()
wattleaf_write_keys("${WATTLEAF_GENERATED}" ${WATTLEAF_KEYS})
if(WIN32 AND WATTLEAF_KEY_NOTICE)
  message(NOTICE "${WATTLEAF_KEY_NOTICE}")
endif()
