# Cross-build for Windows x64 on Debian with MSVC's ABI: clang as a replacement for cl, MSVC's own standard library,
# the Windows headers of mingw-w64. docs/msvc-abi.md says what this proves.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(WATTLEAF_MSVC_ABI ON)

# A checkout of MSVC's standard library.
if(NOT WATTLEAF_MSVC_STL)
  set(WATTLEAF_MSVC_STL "$ENV{WATTLEAF_MSVC_STL}")
endif()
set(WATTLEAF_MSVC_STL "${WATTLEAF_MSVC_STL}" CACHE PATH "A checkout of MSVC's standard library")
if(EXISTS "${WATTLEAF_MSVC_STL}/stl/inc/yvals.h")
  set(stl_headers "${WATTLEAF_MSVC_STL}/stl/inc")
elseif(EXISTS "${WATTLEAF_MSVC_STL}/inc/yvals.h")
  set(stl_headers "${WATTLEAF_MSVC_STL}/inc")
else()
  message(FATAL_ERROR "WATTLEAF_MSVC_STL must name a checkout of MSVC's standard library; see docs/msvc-abi.md.")
endif()
# Also for CMake's own small projects. These are compiled only: a program needs the runtime of this build.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WATTLEAF_MSVC_STL WATTLEAF_MSVC_ABI_BUILD)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

# clang chooses its command line by the name of its file.
set(tools "${CMAKE_CURRENT_LIST_DIR}/../build/msvc-abi-tools")
if(NOT EXISTS "${tools}/clang-cl")
  file(MAKE_DIRECTORY "${tools}")
  file(CREATE_LINK /usr/bin/clang-19 "${tools}/clang-cl" SYMBOLIC)
endif()
set(CMAKE_C_COMPILER "${tools}/clang-cl")
set(CMAKE_CXX_COMPILER "${tools}/clang-cl")
set(CMAKE_LINKER lld-link-19)
set(CMAKE_AR llvm-lib-19)
set(CMAKE_OBJDUMP x86_64-w64-mingw32-objdump)
# By this path it finds clang, which reads its includes.
set(CMAKE_RC_COMPILER /usr/lib/llvm-19/bin/llvm-rc)
set(CMAKE_RC_FLAGS_INIT "/I /usr/share/mingw-w64/include")

set(flags --target=x86_64-pc-windows-msvc -fmsc-version=1943 /GS- /X)
set(own "${CMAKE_CURRENT_LIST_DIR}/../tools/msvc-abi")
foreach(folder "${own}/include" "${own}/sdk" "${stl_headers}" /usr/share/mingw-w64/include)
  list(APPEND flags -imsvc "${folder}")
endforeach()
list(APPEND flags -D_INC_COMDEFSP -D_UCRT -D_SSIZE_T_DEFINED -D_HAS_EXCEPTIONS=1
  # Wine's msvcp140.dll is older than these headers.
  -D_DISABLE_CONSTEXPR_MUTEX_CONSTRUCTOR)
list(JOIN flags " " flags)
set(CMAKE_C_FLAGS_INIT "${flags}")
set(CMAKE_CXX_FLAGS_INIT "${flags}")

# The libraries of Windows that CMake links with cl too. tools/msvc-abi/CMakeLists.txt makes them, and the runtimes.
set(libraries kernel32 user32 gdi32 shell32 ole32 oleaut32 uuid advapi32)
set(linker_flags "/nodefaultlib /manifest:no")
set(program_part "")
set(library_part "")
# For a program outside of this build: a finished build, whose runtimes it links.
if(WATTLEAF_MSVC_ABI_BUILD)
  list(PREPEND libraries msvc_abi_runtime msvc_abi_stl msvcp140 vcruntime140 vcruntime140_1 ucrtbase kernelbase)
  string(APPEND linker_flags " /libpath:${WATTLEAF_MSVC_ABI_BUILD}/import-libraries"
    " /libpath:${WATTLEAF_MSVC_ABI_BUILD}/lib /ignore:4217")
  set(program_part " msvc_abi_program.lib")
  set(library_part " msvc_abi_library.lib")
endif()
list(TRANSFORM libraries APPEND .lib)
list(JOIN libraries " " libraries)
set(CMAKE_C_STANDARD_LIBRARIES "${libraries}" CACHE STRING "")
set(CMAKE_CXX_STANDARD_LIBRARIES "${libraries}" CACHE STRING "")
set(CMAKE_EXE_LINKER_FLAGS_INIT "${linker_flags}${program_part}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "${linker_flags}${library_part}")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "${linker_flags}${library_part}")

# Programs of the build run in a private Wine prefix in the build folder, never in the user's own.
set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../tools/under-wine;${CMAKE_BINARY_DIR}/prefix")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
