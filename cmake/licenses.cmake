# SPDX-License-Identifier: MIT
# Makes LICENSES.txt: this project's licence, then the notices of what the program carries in itself, the headers that
# are compiled in and the packages of the preview's page. Boost's licence asks for no notice in programs.
set(notices "This program is under the licence that follows. Its parts are under those after it.\n\n")
file(READ ${PROJECT_SOURCE_DIR}/LICENSE own)
string(APPEND notices "${own}")
foreach(package libcli11-dev libfmt-dev libhowardhinnant-date-dev libsimdjson-dev libtomlplusplus-dev
                ${tavrin_carried_packages})
  file(READ /usr/share/doc/${package}/copyright notice)
  string(APPEND notices "\n---- ${package}\n\n${notice}")
endforeach()
set(notices_of_headers ${CMAKE_CURRENT_BINARY_DIR}/header_licenses.txt)
file(CONFIGURE OUTPUT ${notices_of_headers} CONTENT "@notices@" @ONLY)

set(licenses_file ${PROJECT_BINARY_DIR}/LICENSES.txt)
set(notices_of_page)
if(TAVRIN_PREVIEW)
  set(notices_of_page ${page_folder}/licenses.txt)
endif()
add_custom_command(
  OUTPUT ${licenses_file}
  COMMAND ${CMAKE_COMMAND} -E cat ${notices_of_headers} ${notices_of_page} > ${licenses_file}
  DEPENDS ${notices_of_headers} ${notices_of_page})
set_source_files_properties(options.cpp PROPERTIES OBJECT_DEPENDS ${licenses_file} COMPILE_DEFINITIONS
                                                   TAVRIN_LICENSES="${licenses_file}")
