# Faster tools for test programs for Windows, from the folder that includes this file down. The library, the host and the
# stand-ins keep the compiler and the linker with which they are shipped.
if(NOT MINGW OR NOT CMAKE_HOST_UNIX)
  return()
endif()

# LLVM's linker takes a tenth of a second for a program that takes the toolchain's own a second or more.
find_program(WATTLEAF_LLD ld.lld)
if(WATTLEAF_LLD)
  add_link_options("SHELL:-wrapper \"${CMAKE_SOURCE_DIR}/tools/link-with-lld\"")
endif()

# clang compiles in half the time of GCC. gcov reads only what GCC wrote.
find_program(WATTLEAF_CLANG clang++)
if(WATTLEAF_CLANG AND NOT WATTLEAF_COVERAGE)
  # clang does not find libstdc++ by itself, because it does not accept Debian's "12-posix" as a version.
  set(cpp_headers ${CMAKE_CXX_IMPLICIT_INCLUDE_DIRECTORIES})
  list(FILTER cpp_headers INCLUDE REGEX "/c\\+\\+")
  list(TRANSFORM cpp_headers PREPEND -isystem)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_SOURCE_DIR}/tools/compile-with-clang" --target=x86_64-w64-mingw32
    -femulated-tls -Xclang -fno-pch-timestamp -nostdinc++ ${cpp_headers} -Wno-unknown-warning-option -Wno-sign-conversion --)
endif()
