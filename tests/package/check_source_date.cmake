# The time that the files of a zip get: cmake -DSOURCE=... -DWORK=... -P check_source_date.cmake
cmake_minimum_required(VERSION 3.25)
include("${SOURCE}/cmake/SourceDate.cmake")

# expect(<seconds since 1970> <folder>)
function(expect wanted folder)
  wattleaf_set_source_date("${folder}")
  if(NOT "$ENV{SOURCE_DATE_EPOCH}" STREQUAL "${wanted}")
    message(FATAL_ERROR "The time of ${folder} is $ENV{SOURCE_DATE_EPOCH} instead of ${wanted}.")
  endif()
  set(ENV{SOURCE_DATE_EPOCH} "")
endfunction()

# expect_day(<day> <seconds>): sources without commits have the time of the newest entry's day in UTC.
function(expect_day day wanted)
  file(WRITE "${WORK}/CHANGELOG.md" "# Changelog\n\n## [1.0.0] - ${day}\n\n- Text.\n\n## [0.9.0] - 2001-01-01\n")
  expect(${wanted} "${WORK}")
endfunction()

file(REMOVE_RECURSE "${WORK}")
set(ENV{GIT_CEILING_DIRECTORIES} "${WORK}/..")
set(ENV{SOURCE_DATE_EPOCH} "")
expect_day(1970-01-01 0)
expect_day(2000-02-29 951782400)
expect_day(2000-03-01 951868800)
expect_day(2026-08-09 1786233600)
expect_day(2026-11-22 1795305600)
expect_day(2026-12-31 1798675200)

set(ENV{GIT_AUTHOR_DATE} "2026-11-20T10:00:00Z")
set(ENV{GIT_COMMITTER_DATE} "2026-11-21T12:34:56Z")
execute_process(COMMAND git -C "${WORK}" init -q COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND git -C "${WORK}" -c user.name=name -c user.email=mail commit -q --allow-empty -m subject
  COMMAND_ERROR_IS_FATAL ANY)
expect(1795264496 "${WORK}")
set(ENV{SOURCE_DATE_EPOCH} 42)
expect(42 "${WORK}")
