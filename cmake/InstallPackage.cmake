# `cmake --install` and `cpack` make the package: the library with its import library, the console host, the public headers,
# a CMake package, documents, examples, the licences of others' parts and a bill of materials. A program then needs only
#   find_package(WattleafService)
#   target_link_libraries(program PRIVATE WattleafService::WattleafService)
# The component `symbols` has the debug symbols, for a zip of their own.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)
include(ThirdParties)

set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME package)
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/WattleafService")
set(share "${CMAKE_INSTALL_DATADIR}/WattleafService")
if(MINGW)
  set(abi "mingw-w64")
else()
  set(abi "MSVC")
endif()

install(TARGETS WattleafService wattleaf_headers EXPORT WattleafServiceTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/WattleafService"
  FILE_SET abi DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/WattleafService")
install(TARGETS wattleaf_host RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
# The C++ runtime that the library shares with its callers. With MSVC, Microsoft's redistributable
# package installs it.
if(WATTLEAF_RUNTIME_FILES)
  install(PROGRAMS ${WATTLEAF_RUNTIME_FILES} DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
if(MINGW)
  install(FILES "$<TARGET_FILE:WattleafService>.debug" "$<TARGET_FILE:wattleaf_host>.debug"
    DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT symbols)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "MSVC")
  install(FILES $<TARGET_PDB_FILE:WattleafService> $<TARGET_PDB_FILE:wattleaf_host>
    DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT symbols OPTIONAL)
endif()
install(EXPORT WattleafServiceTargets NAMESPACE WattleafService:: DESTINATION "${package_folder}")

install(DIRECTORY "${CMAKE_SOURCE_DIR}/docs" DESTINATION "${share}" PATTERN images EXCLUDE)
install(DIRECTORY "${CMAKE_SOURCE_DIR}/examples" DESTINATION "${share}")
install(FILES "${CMAKE_SOURCE_DIR}/CHANGELOG.md" "${CMAKE_SOURCE_DIR}/SECURITY.md" DESTINATION "${share}")
foreach(row IN LISTS WATTLEAF_THIRD_PARTIES)
  string(REGEX REPLACE "\\|.*" "" part "${row}")
  install(FILES ${WATTLEAF_NOTICE_${part}} DESTINATION "${share}/licences/${part}")
endforeach()
configure_file(cmake/PackageReadme.md.in "${CMAKE_BINARY_DIR}/package/README.md" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/package/README.md" DESTINATION .)

configure_file(cmake/WattleafServiceConfig.cmake.in "${CMAKE_BINARY_DIR}/package/WattleafServiceConfig.cmake" @ONLY)
# The configuration judges the architecture itself, with a message that says what is wrong.
write_basic_package_version_file("${CMAKE_BINARY_DIR}/package/WattleafServiceConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion ARCH_INDEPENDENT)
install(FILES
  "${CMAKE_BINARY_DIR}/package/WattleafServiceConfig.cmake"
  "${CMAKE_BINARY_DIR}/package/WattleafServiceConfigVersion.cmake"
  DESTINATION "${package_folder}")

# Last, when all files are there.
install(CODE "
  include(\"${CMAKE_SOURCE_DIR}/cmake/SourceDate.cmake\")
  wattleaf_set_source_date(\"${CMAKE_SOURCE_DIR}\")
  set(BOM_PREFIX \"\${CMAKE_INSTALL_PREFIX}\")
  set(BOM_FILE \"${share}/WattleafService.spdx.json\")
  set(BOM_VERSION \"${PROJECT_VERSION}\")
  set(BOM_THIRD_PARTIES \"${WATTLEAF_THIRD_PARTIES}\")
  set(BOM_TOOL \"${CMAKE_CXX_COMPILER_ID}-${CMAKE_CXX_COMPILER_VERSION}\")
  include(\"${CMAKE_SOURCE_DIR}/cmake/WriteBom.cmake\")")
if(WATTLEAF_KEY_NOTICE)
  install(CODE "message(NOTICE \"${WATTLEAF_KEY_NOTICE}\")")
endif()

set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME WattleafService)
set(CPACK_PACKAGE_FILE_NAME "WattleafService-${PROJECT_VERSION}-windows-x64-${abi}")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/zip")
set(CPACK_PACKAGE_CHECKSUM SHA256)
# A zip for each component.
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_COMPONENTS_ALL package symbols)
set(CPACK_ARCHIVE_PACKAGE_FILE_NAME "${CPACK_PACKAGE_FILE_NAME}")
set(CPACK_ARCHIVE_SYMBOLS_FILE_NAME "${CPACK_PACKAGE_FILE_NAME}-symbols")
# Only on request (tests/tools), because the tests must be built before.
set(CPACK_ARCHIVE_TESTS_FILE_NAME "${CPACK_PACKAGE_FILE_NAME}-tests")
# CPack gives all files of a zip this time. A zip holds local time too.
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/package/CPackDate.cmake" @ONLY CONTENT [[
include("@CMAKE_SOURCE_DIR@/cmake/SourceDate.cmake")
wattleaf_set_source_date("@CMAKE_SOURCE_DIR@")
set(ENV{TZ} UTC0)
]])
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_BINARY_DIR}/package/CPackDate.cmake")
# Without this, cpack would first build the tests too.
set(CMAKE_SKIP_PACKAGE_ALL_DEPENDENCY ON)
include(CPack)
