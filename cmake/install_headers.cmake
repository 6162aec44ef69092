# SPDX-License-Identifier: MIT
# Hosts include what lies in tavrin/ itself. Of the headers in its folders only those are installed that these need; all
# others are internal.
cmake_policy(VERSION 3.25)

file(GLOB headers_left RELATIVE ${source} ${source}/tavrin/*.h)
set(headers ${headers_left})
while(headers_left)
  list(POP_FRONT headers_left header)
  file(STRINGS ${source}/${header} lines REGEX "^#include \"tavrin/")
  foreach(line ${lines})
    string(REGEX REPLACE "^#include \"(.*)\"$" "\\1" included "${line}")
    if(NOT included IN_LIST headers)
      list(APPEND headers ${included})
      list(APPEND headers_left ${included})
    endif()
  endforeach()
endwhile()
foreach(header ${headers})
  get_filename_component(folder ${header} DIRECTORY)
  file(INSTALL ${source}/${header} DESTINATION ${CMAKE_INSTALL_PREFIX}/${include_dir}/${folder})
endforeach()
