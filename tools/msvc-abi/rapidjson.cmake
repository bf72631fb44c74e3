# RapidJSON 1.1.0, Debian's version, assigns to a constant in an operator that is never called. GCC does not look at
# it, clang in MSVC's mode does; later versions are without it. This build uses a copy with the operator deleted.
set(folder "${CMAKE_BINARY_DIR}/include-links/rapidjson-1.1.0")
if(NOT EXISTS "${folder}/rapidjson/document.h")
  file(COPY /usr/include/rapidjson DESTINATION "${folder}")
  file(READ "${folder}/rapidjson/document.h" text)
  string(REGEX REPLACE "(GenericStringRef& operator=\\(const GenericStringRef& rhs\\)) {[^}]*}" "\\1 = delete;"
    text "${text}")
  file(WRITE "${folder}/rapidjson/document.h" "${text}")
endif()
set_target_properties(wattleaf_rapidjson PROPERTIES INTERFACE_INCLUDE_DIRECTORIES "${folder}"
  INTERFACE_SYSTEM_INCLUDE_DIRECTORIES "${folder}")
# It knows these features of other compilers only.
target_compile_definitions(wattleaf_rapidjson INTERFACE RAPIDJSON_HAS_CXX11=1 RAPIDJSON_HAS_CXX11_RVALUE_REFS=1
  RAPIDJSON_HAS_CXX11_NOEXCEPT=1 RAPIDJSON_HAS_CXX11_RANGE_FOR=1 RAPIDJSON_HAS_CXX11_TYPETRAITS=1)
