# The development key signs the collector stand-in and files for tests. It is created once in the build
# folder and never leaves it. Only a build with development keys trusts it.
set(WATTLEAF_DEVELOPMENT_KEY "${CMAKE_BINARY_DIR}/development-key")
find_program(WATTLEAF_OPENSSL openssl)
find_program(WATTLEAF_OSSLSIGNCODE osslsigncode)
set(WATTLEAF_CAN_SIGN OFF)
if(WATTLEAF_OPENSSL AND WATTLEAF_OSSLSIGNCODE AND CMAKE_HOST_UNIX)
  set(WATTLEAF_CAN_SIGN ON)
endif()

# An operator's own key for the simulated collector, in place of the development key.
set(WATTLEAF_SIGNING_KEY "" CACHE PATH "A folder with leaf.key and chain.pem (the signer's certificate first) to sign the simulated collector")
if(WATTLEAF_SIGNING_KEY)
  foreach(file leaf.key chain.pem)
    if(NOT EXISTS "${WATTLEAF_SIGNING_KEY}/${file}")
      message(FATAL_ERROR "WATTLEAF_SIGNING_KEY: ${WATTLEAF_SIGNING_KEY} has no ${file}.")
    endif()
  endforeach()
endif()

# wattleaf_make_signing_key(<folder> <subject> [EXPIRED]): runs tools/make-signing-key, which writes leaf.key,
# chain.pem and public_key.txt to the folder, unless they exist.
function(wattleaf_make_signing_key folder subject)
  if(EXISTS "${folder}/public_key.txt")
    return()
  endif()
  execute_process(COMMAND "${CMAKE_SOURCE_DIR}/tools/make-signing-key" "${folder}" "${subject}" ${ARGN}
    RESULT_VARIABLE status ERROR_VARIABLE errors)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "Cannot create a signing key in ${folder}:\n${errors}")
  endif()
endfunction()

if(WATTLEAF_CAN_SIGN AND WIN32)
  wattleaf_make_signing_key("${WATTLEAF_DEVELOPMENT_KEY}" "/C=DE/O=Wattleaf/CN=Wattleaf development build")
endif()

# wattleaf_sign(TARGET target OUTPUT file [INPUT file] [KEY folder] [NEST])
# Writes a signed copy of the target's file, or of INPUT, to OUTPUT. KEY is a folder of
# wattleaf_make_signing_key, by default the development key's. NEST adds a second signature to the first.
# The target <target>_signed builds all signed copies and is part of `all`.
# Without the signing tools, OUTPUT is an unsigned copy.
function(wattleaf_sign)
  cmake_parse_arguments(PARSE_ARGV 0 arg "NEST" "TARGET;OUTPUT;INPUT;KEY" "")
  if(NOT arg_INPUT)
    set(arg_INPUT "$<TARGET_FILE:${arg_TARGET}>")
  endif()
  if(NOT arg_KEY)
    set(arg_KEY "${WATTLEAF_DEVELOPMENT_KEY}")
  endif()
  set(nest)
  if(arg_NEST)
    set(nest -nest)
  endif()
  get_filename_component(folder "${arg_OUTPUT}" DIRECTORY)
  file(MAKE_DIRECTORY "${folder}")

  set(sign "${WATTLEAF_OSSLSIGNCODE}" sign -h sha256 ${nest}
    -certs "${arg_KEY}/chain.pem" -key "${arg_KEY}/leaf.key" -in "${arg_INPUT}" -out "${arg_OUTPUT}")
  set(depends ${arg_TARGET} "${arg_INPUT}" "${arg_KEY}/chain.pem" "${arg_KEY}/leaf.key")
  if(NOT WATTLEAF_CAN_SIGN)
    message(WARNING "${arg_OUTPUT} stays unsigned: signing needs openssl and osslsigncode on a Unix machine.")
    set(sign "${CMAKE_COMMAND}" -E copy "${arg_INPUT}" "${arg_OUTPUT}")
    set(depends ${arg_TARGET} "${arg_INPUT}")
  endif()
  # osslsigncode does not overwrite an existing file.
  add_custom_command(OUTPUT "${arg_OUTPUT}"
    COMMAND "${CMAKE_COMMAND}" -E rm -f "${arg_OUTPUT}"
    COMMAND ${sign}
    DEPENDS ${depends}
    COMMENT "Signing ${arg_OUTPUT}" VERBATIM)
  if(NOT TARGET ${arg_TARGET}_signed)
    add_custom_target(${arg_TARGET}_signed ALL)
  endif()
  get_filename_component(name "${arg_OUTPUT}" NAME)
  add_custom_target(${arg_TARGET}_signed_${name} DEPENDS "${arg_OUTPUT}")
  add_dependencies(${arg_TARGET}_signed ${arg_TARGET}_signed_${name})
endfunction()
