# SPDX-License-Identifier: MIT
# What the library was built with, the static library's users link too: one list for both.
include(${CMAKE_CURRENT_LIST_DIR}/dependencies.cmake)
if(tavrin_missing)
  set(tavrin_FOUND FALSE)
  set(tavrin_NOT_FOUND_MESSAGE "tavrin needs ${tavrin_missing}; in brackets Debian's packages.")
  return()
endif()
include(${CMAKE_CURRENT_LIST_DIR}/tavrinTargets.cmake)
