# wattleaf_set_source_date(<source folder>): sets the environment variable SOURCE_DATE_EPOCH, unless it is set, to the time
# of the last commit, or without a repository to the day of the newest entry in CHANGELOG.md. CPack gives this time to all
# files of an archive, and the bill of materials names it.
function(wattleaf_set_source_date source)
  if(NOT "$ENV{SOURCE_DATE_EPOCH}" STREQUAL "")
    return()
  endif()
  execute_process(COMMAND git -C "${source}" log -1 --format=%ct
    OUTPUT_VARIABLE seconds OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(NOT seconds MATCHES "^[0-9]+$")
    file(STRINGS "${source}/CHANGELOG.md" entry REGEX "^## \\[[0-9.]+\\] - [0-9-]+$" LIMIT_COUNT 1)
    if(NOT entry MATCHES "([0-9][0-9][0-9][0-9])-([0-9][0-9])-([0-9][0-9])$")
      message(FATAL_ERROR "CHANGELOG.md has no entry with a version and a day.")
    endif()
    # The days since 1970-01-01: of whole years that begin in March, then of months, then of the last month.
    math(EXPR year "${CMAKE_MATCH_1} - ((14 - 1${CMAKE_MATCH_2} + 100) / 12)")
    math(EXPR month "(1${CMAKE_MATCH_2} - 100 + 9) % 12")
    math(EXPR days "365 * ${year} + ${year} / 4 - ${year} / 100 + ${year} / 400 - 719468")
    math(EXPR seconds "86400 * (${days} + (153 * ${month} + 2) / 5 + 1${CMAKE_MATCH_3} - 101)")
  endif()
  set(ENV{SOURCE_DATE_EPOCH} "${seconds}")
endfunction()
