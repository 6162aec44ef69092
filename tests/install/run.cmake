# SPDX-License-Identifier: MIT
# Installs what is built into an empty prefix, builds a host program against it and runs both programs. Configures
# another one for which something is missing.
function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILT} --prefix ${SCRATCH}/prefix)
if(EXISTS ${SCRATCH}/prefix/include/tavrin/platform/layout/measurer.h)
  message(FATAL_ERROR "an internal header is installed")
endif()
run(${CMAKE_COMMAND}
    -G Ninja
    -S ${HOST}
    -B ${SCRATCH}/build
    -D CMAKE_CXX_COMPILER=${COMPILER}
    -D CMAKE_CXX_FLAGS=${FLAGS}
    -D CMAKE_PREFIX_PATH=${SCRATCH}/prefix
    -D TAVRIN_WANTED=${VERSION})
run(${CMAKE_COMMAND}
    -G Ninja
    -S ${HOST}/lacking
    -B ${SCRATCH}/lacking
    -D CMAKE_CXX_COMPILER=${COMPILER}
    -D CMAKE_PREFIX_PATH=${SCRATCH}/prefix)
run(${CMAKE_COMMAND} --build ${SCRATCH}/build)
run(${SCRATCH}/build/host)
run(${SCRATCH}/prefix/bin/tavrin check ${HOST}/widget.json)
if(EXISTS ${SCRATCH}/prefix/include/tavrin/tavrin_c.h)
  # As its users would: what it needs pkg-config tells.
  file(GLOB_RECURSE package ${SCRATCH}/prefix/tavrin-c.pc)
  cmake_path(GET package PARENT_PATH package_folder)
  cmake_path(GET package_folder PARENT_PATH library_folder)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${package_folder} pkg-config --cflags --libs tavrin-c
                  OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags)
  run(${C_COMPILER} -std=c99 -Wall -Wextra -pedantic -Werror ${C_HOST} ${flags} -Wl,-rpath,${library_folder}
      -o ${SCRATCH}/c_host)
  run(${SCRATCH}/c_host test ${HOST}/widget.json)
endif()
