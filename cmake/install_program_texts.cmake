# SPDX-License-Identifier: MIT
# Installs what the program tells of itself: completions of three shells, and manual pages.
cmake_policy(VERSION 3.25)
foreach(folder data_dir man_dir)
  cmake_path(ABSOLUTE_PATH ${folder} BASE_DIRECTORY "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}" NORMALIZE)
endforeach()

foreach(completion bash=bash-completion/completions/tavrin zsh=zsh/vendor-completions/_tavrin
                   fish=fish/vendor_completions.d/tavrin.fish)
  string(REGEX MATCH "^(.*)=(.*)$" _ ${completion})
  cmake_path(APPEND data_dir ${CMAKE_MATCH_2} OUTPUT_VARIABLE file)
  cmake_path(GET file PARENT_PATH folder)
  file(MAKE_DIRECTORY ${folder})
  execute_process(COMMAND ${tavrin_program} completion ${CMAKE_MATCH_1} OUTPUT_FILE ${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

execute_process(COMMAND ${source}/scripts/make_man.py ${tavrin_program} ${man_dir}/man1 COMMAND_ERROR_IS_FATAL ANY)
file(GLOB pages ${man_dir}/man1/tavrin*.1)
execute_process(COMMAND gzip --best --no-name --force ${pages} COMMAND_ERROR_IS_FATAL ANY)
