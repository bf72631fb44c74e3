# Language level, warnings and platform definitions. Every target of this project links wattleaf_flags.
option(WATTLEAF_SANITIZE "AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
option(WATTLEAF_SANITIZE_THREADS "ThreadSanitizer" OFF)
option(WATTLEAF_COVERAGE "Count the lines and branches that tests reach, with gcov" OFF)
option(WATTLEAF_FUZZ "Instrumented portable core and its fuzz targets; needs clang" OFF)

add_library(wattleaf_flags INTERFACE)
target_compile_features(wattleaf_flags INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
find_package(Threads REQUIRED)

if(WATTLEAF_MSVC_ABI)
  add_subdirectory("${CMAKE_SOURCE_DIR}/tools/msvc-abi" "${CMAKE_BINARY_DIR}/msvc-abi")
  target_link_libraries(wattleaf_flags INTERFACE msvc_abi)
endif()
if(MSVC)
  # 4251, 4275: the contract requires exported classes with members and bases from the standard library.
  # /EHsc-: functions with C linkage may throw. Tests fake calls of Windows that do.
  target_compile_options(wattleaf_flags INTERFACE /W4 /permissive- /utf-8 /EHsc- /wd4251 /wd4275)
else()
  target_compile_options(wattleaf_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
  # GCC 12 at -O3 reports an overlapping copy in every `"text" + std::string` that it inlines.
  target_compile_options(wattleaf_flags INTERFACE
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>)
endif()

if(WIN32)
  target_compile_definitions(wattleaf_flags INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0A00)
endif()
# RapidJSON's empty stack adds an offset to a null pointer, but only compares the sum.
set(no_null_offsets $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=pointer-overflow>)
if(WATTLEAF_SANITIZE)
  # WATTLEAF_UNCHECKED: checks that the targets of a folder leave out.
  define_property(TARGET PROPERTY WATTLEAF_UNCHECKED INITIALIZE_FROM_VARIABLE WATTLEAF_UNCHECKED)
  set(unchecked $<TARGET_PROPERTY:WATTLEAF_UNCHECKED>)
  target_compile_options(wattleaf_flags INTERFACE
    -fsanitize=address,undefined ${no_null_offsets} -fno-sanitize-recover=all -fno-omit-frame-pointer
    $<$<BOOL:${unchecked}>:-fno-sanitize=${unchecked}>)
  target_link_options(wattleaf_flags INTERFACE -fsanitize=address,undefined)
endif()
if(WATTLEAF_SANITIZE_THREADS)
  target_compile_options(wattleaf_flags INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(wattleaf_flags INTERFACE -fsanitize=thread)
endif()
if(WATTLEAF_FUZZ)
  set(fuzz_flags -fsanitize=fuzzer-no-link,address,undefined ${no_null_offsets} -fno-sanitize-recover=all)
  target_compile_options(wattleaf_flags INTERFACE ${fuzz_flags} -O1 -g1 -fno-omit-frame-pointer)
  target_link_options(wattleaf_flags INTERFACE ${fuzz_flags})
endif()

# Precompiled, except in the presets that build what is shipped. Only to compile faster: each source includes what it
# uses, which tools/check checks for src/.
set(WATTLEAF_COMMON_HEADERS <algorithm> <array> <cstdint> <functional> <map> <memory> <optional> <span> <stdexcept>
  <string> <string_view> <system_error> <utility> <vector> <rapidjson/document.h>)
