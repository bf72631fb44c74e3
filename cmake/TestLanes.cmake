# Under Wine two tests run at a time, each on a processor of its own, together with a Wine server of its own. That takes
# two thirds of the time: most calls of Windows wait for the server, and a wait between processors is long.
#
# A test belongs to one of two lanes. Those that need the simulated notebook are in NOTEBOOK, all others in OTHER. Of a
# lane, TEST stands in front of the test's command, WINE in front of a program for Windows, and LOCK among the test's
# properties. The few tests with many threads, such as the soak test, use the notebook's Wine without its processor.
set(WATTLEAF_NOTEBOOK_TEST "")
set(WATTLEAF_NOTEBOOK_WINE ${CMAKE_CROSSCOMPILING_EMULATOR})
set(WATTLEAF_NOTEBOOK_LOCK RESOURCE_LOCK simulated-notebook)
set(WATTLEAF_OTHER_TEST "")
set(WATTLEAF_OTHER_WINE "")
set(WATTLEAF_OTHER_LOCK "")
if(CMAKE_CROSSCOMPILING_EMULATOR)
  list(GET CMAKE_CROSSCOMPILING_EMULATOR 0 under_wine)
  set(WATTLEAF_NOTEBOOK_TEST "${CMAKE_SOURCE_DIR}/tools/on-processor" 0)
  set(WATTLEAF_OTHER_TEST "${CMAKE_SOURCE_DIR}/tools/on-processor" 1)
  set(WATTLEAF_OTHER_WINE "${under_wine}" "${CMAKE_BINARY_DIR}/second-prefix")
  set(WATTLEAF_OTHER_LOCK RESOURCE_LOCK second-prefix)
endif()
