# wattleaf_rpc_stubs(<name> <idl>): generates the stubs of a remote procedure call with the
# toolchain's IDL compiler at build time. Defines the libraries <name>_client and <name>_server with
# the header <name>.h. A program that links one must define MIDL_user_allocate and MIDL_user_free.
enable_language(C)

# MIDL is in the SDK's folder, which is on the search path in a developer prompt only.
set(uses_midl OFF)
if(MSVC AND CMAKE_HOST_WIN32)
  set(uses_midl ON)
  set(sdk "$ENV{ProgramFiles\(x86\)}/Windows Kits/10/bin/${CMAKE_VS_WINDOWS_TARGET_PLATFORM_VERSION}/x64")
  find_program(WATTLEAF_MIDL midl HINTS "${sdk}" "$ENV{WindowsSdkVerBinPath}/x64" REQUIRED)
else()
  find_program(WATTLEAF_WIDL x86_64-w64-mingw32-widl REQUIRED)
endif()

function(wattleaf_rpc_stubs name idl)
  set(source "${CMAKE_CURRENT_SOURCE_DIR}/${idl}")
  set(folder "${CMAKE_CURRENT_BINARY_DIR}/${name}")
  set(header "${folder}/${name}.h")
  file(MAKE_DIRECTORY "${folder}")
  if(uses_midl)
    # MIDL too would look for the compiler, which preprocesses the source, on the search path.
    set(commands COMMAND "${WATTLEAF_MIDL}" /nologo /env x64 /cpp_cmd "${CMAKE_CXX_COMPILER}" /out "${folder}" /h "${name}.h"
      /cstub "${name}_client.c" /sstub "${name}_server.c" "${source}")
  else()
    # Interpreted stubs, because the others need headers of Wine.
    set(commands
      COMMAND "${WATTLEAF_WIDL}" -Oicf -h -o "${header}" "${source}"
      COMMAND "${WATTLEAF_WIDL}" -Oicf -c -o "${folder}/${name}_client.c" -H "${name}.h" "${source}"
      COMMAND "${WATTLEAF_WIDL}" -Oicf -s -o "${folder}/${name}_server.c" -H "${name}.h" "${source}")
  endif()
  add_custom_command(OUTPUT "${header}" "${folder}/${name}_client.c" "${folder}/${name}_server.c"
    ${commands} DEPENDS "${source}" VERBATIM)
  add_custom_target(${name}_stubs DEPENDS "${header}" "${folder}/${name}_client.c" "${folder}/${name}_server.c")
  foreach(side client server)
    add_library(${name}_${side} STATIC "${folder}/${name}_${side}.c")
    add_dependencies(${name}_${side} ${name}_stubs)
    target_include_directories(${name}_${side} SYSTEM PUBLIC "${folder}")
    # Generated code: no warnings.
    target_compile_options(${name}_${side} PRIVATE $<IF:$<BOOL:${MSVC}>,/w,-w>)
    target_link_libraries(${name}_${side} PUBLIC rpcrt4)
  endforeach()
endfunction()
