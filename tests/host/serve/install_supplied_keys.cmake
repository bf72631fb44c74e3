# Installs a COPY of the INSTALLED host with the LIBRARY that has the supplied keys.
file(REMOVE_RECURSE "${COPY}")
file(GLOB parts "${INSTALLED}/*.dll" "${INSTALLED}/*.exe")
if(NOT parts)
  message(FATAL_ERROR "${INSTALLED} has no host: tools/prepare-notebook installs it.")
endif()
file(COPY ${parts} DESTINATION "${COPY}")
file(COPY_FILE "${LIBRARY}" "${COPY}/WattleafService.dll")
