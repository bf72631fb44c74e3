# The parts of others in what is shipped: in WATTLEAF_THIRD_PARTIES a row "name|version|licence|how it is linked" for each,
# and in WATTLEAF_NOTICE_<name> the files with its licence. The licences come from the machine that builds.
set(WATTLEAF_THIRD_PARTIES "")

# wattleaf_third_party(<name> <version> <licence, SPDX> STATIC_LINK|DYNAMIC_LINK <file of the licence>...)
macro(wattleaf_third_party name version licence link)
  list(APPEND WATTLEAF_THIRD_PARTIES "${name}|${version}|${licence}|${link}")
  set(WATTLEAF_NOTICE_${name} ${ARGN})
endmacro()

# wattleaf_macro_number(<out> <header> <macro>): the number that a header defines the macro as.
function(wattleaf_macro_number out header macro)
  file(STRINGS "${header}" line REGEX "^#[ \t]*define +${macro} +[0-9]+" LIMIT_COUNT 1)
  if(NOT line MATCHES "${macro} +([0-9]+)")
    message(FATAL_ERROR "${header} does not define ${macro}.")
  endif()
  set(${out} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

# wattleaf_dotted_version(<out> <header> <macro>...): such numbers with dots between them.
function(wattleaf_dotted_version out header)
  set(numbers "")
  foreach(macro IN LISTS ARGN)
    wattleaf_macro_number(number "${header}" ${macro})
    list(APPEND numbers ${number})
  endforeach()
  list(JOIN numbers "." text)
  set(${out} "${text}" PARENT_SCOPE)
endfunction()

if(MINGW)
  set(documents /usr/share/doc)
  wattleaf_dotted_version(version /usr/include/rapidjson/rapidjson.h
    RAPIDJSON_MAJOR_VERSION RAPIDJSON_MINOR_VERSION RAPIDJSON_PATCH_VERSION)
  wattleaf_third_party(RapidJSON ${version} MIT STATIC_LINK "${documents}/rapidjson-dev/copyright")
  # 1130 is 1.13.
  wattleaf_macro_number(number "${WATTLEAF_DEPS}/pugixml/src/pugixml.hpp" PUGIXML_VERSION)
  string(REGEX REPLACE "^(.)(..).*" "\\1.\\2" version ${number})
  wattleaf_third_party(pugixml ${version} MIT STATIC_LINK "${WATTLEAF_DEPS}/pugixml/LICENSE.md")
  wattleaf_dotted_version(version "${WATTLEAF_DEPS}/pcre2/src/pcre2.h.generic" PCRE2_MAJOR PCRE2_MINOR)
  wattleaf_third_party(PCRE2 ${version} BSD-3-Clause STATIC_LINK "${WATTLEAF_DEPS}/pcre2/LICENCE")
  file(STRINGS /usr/include/CLI/Version.hpp version REGEX "define CLI11_VERSION \"" LIMIT_COUNT 1)
  string(REGEX REPLACE ".*\"(.*)\".*" "\\1" version "${version}")
  wattleaf_third_party(CLI11 ${version} BSD-3-Clause STATIC_LINK "${documents}/libcli11-dev/copyright")
  wattleaf_third_party(GCC-runtime ${CMAKE_CXX_COMPILER_VERSION} "GPL-3.0-or-later WITH GCC-exception-3.1" DYNAMIC_LINK
    "${documents}/gcc-mingw-w64-x86-64-posix-runtime/copyright" /usr/share/common-licenses/GPL-3)
  set(header /usr/share/mingw-w64/include/_mingw_mac.h)
  wattleaf_dotted_version(version "${header}" __MINGW64_VERSION_MAJOR __MINGW64_VERSION_MINOR __MINGW64_VERSION_BUGFIX)
  # Its pages name the licence of each file: public domain, ZPL, MIT and BSD.
  wattleaf_third_party(mingw-w64-winpthreads ${version} NOASSERTION DYNAMIC_LINK "${documents}/mingw-w64-x86-64-dev/copyright")
elseif(VCPKG_INSTALLED_DIR)
  set(documents "${VCPKG_INSTALLED_DIR}/${VCPKG_TARGET_TRIPLET}/share")
  wattleaf_third_party(RapidJSON "${RapidJSON_VERSION}" MIT STATIC_LINK "${documents}/rapidjson/copyright")
  wattleaf_third_party(pugixml "${pugixml_VERSION}" MIT STATIC_LINK "${documents}/pugixml/copyright")
  wattleaf_third_party(PCRE2 "${PCRE2_VERSION}" BSD-3-Clause STATIC_LINK "${documents}/pcre2/copyright")
  wattleaf_third_party(CLI11 "${CLI11_VERSION}" BSD-3-Clause STATIC_LINK "${documents}/cli11/copyright")
endif()
