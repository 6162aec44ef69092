# What the library was built with, the static library's users link too: one list for both.
include(${CMAKE_CURRENT_LIST_DIR}/dependencies.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/tavrinTargets.cmake)
