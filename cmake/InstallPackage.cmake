# `cmake --install` installs the library with its import library, the public headers, and a CMake
# package. A program then needs only
#   find_package(WattleafService)
#   target_link_libraries(program PRIVATE WattleafService::WattleafService)
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/WattleafService")
install(TARGETS WattleafService EXPORT WattleafServiceTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/WattleafService"
  FILE_SET abi DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/WattleafService")
# The C++ runtime that the library shares with its callers. With MSVC, Microsoft's redistributable
# package installs it.
if(WATTLEAF_RUNTIME_FILES)
  install(PROGRAMS ${WATTLEAF_RUNTIME_FILES} DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
# The forms of the answers and of both stores, for programs that read them.
install(DIRECTORY "${CMAKE_SOURCE_DIR}/docs/schemas" DESTINATION "${CMAKE_INSTALL_DATADIR}/WattleafService")
install(EXPORT WattleafServiceTargets NAMESPACE WattleafService:: DESTINATION "${package_folder}")

file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/WattleafServiceConfig.cmake" @ONLY CONTENT [[
include("${CMAKE_CURRENT_LIST_DIR}/WattleafServiceTargets.cmake")
]])
write_basic_package_version_file("${CMAKE_BINARY_DIR}/WattleafServiceConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${CMAKE_BINARY_DIR}/WattleafServiceConfig.cmake"
  "${CMAKE_BINARY_DIR}/WattleafServiceConfigVersion.cmake"
  DESTINATION "${package_folder}")
