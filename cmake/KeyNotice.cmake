# What a build says about its keys as long as they are not all an operator's own: at configure, at install and in
# the version resource of the library.

# The SHA-256 of each key text that tools/make-placeholder-keys wrote to keys/.
set(WATTLEAF_PLACEHOLDER_KEYS "${CMAKE_CURRENT_LIST_DIR}/placeholder_keys.txt")

# wattleaf_key_notice(<out> supplied|development <key text>...): sets <out> to the notice for a library with these keys,
# empty if all of them are an operator's own.
function(wattleaf_key_notice out kind)
  file(STRINGS "${WATTLEAF_PLACEHOLDER_KEYS}" known)
  set(placeholders 0)
  foreach(text IN LISTS ARGN)
    string(SHA256 digest "${text}")
    if(digest IN_LIST known)
      math(EXPR placeholders "${placeholders} + 1")
    endif()
  endforeach()
  list(LENGTH ARGN all)

  set(notices "")
  if(kind STREQUAL "development")
    list(APPEND notices "development build, which trusts a key of its build folder")
  endif()
  if(placeholders GREATER 0)
    list(APPEND notices "${placeholders} of ${all} keys are placeholders, for which no file can be signed")
  endif()
  if(notices)
    list(JOIN notices ", " text)
    set(${out} "Not for production: ${text}." PARENT_SCOPE)
  else()
    set(${out} "" PARENT_SCOPE)
  endif()
endfunction()
