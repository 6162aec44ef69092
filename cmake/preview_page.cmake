# SPDX-License-Identifier: MIT
# Bundles the page of `tavrin preview` into preview_page_files. Its packages are installed when their lock changes.
find_program(TAVRIN_NODE NAMES node nodejs REQUIRED)
find_program(TAVRIN_NPM npm REQUIRED)

set(page_source ${PROJECT_SOURCE_DIR}/preview)
# The browser's driver and the type checker come only with the tests. All builds share the folder, and each installation
# empties it: a build sees by the mark whether what is there is its own.
set(page_install ${TAVRIN_NPM} ci --no-progress --loglevel=error)
set(page_packages ${page_source}/node_modules/.installed)
if(NOT TAVRIN_TESTS)
  list(APPEND page_install --omit=dev)
  set(page_packages ${page_source}/node_modules/.installed-without-dev)
endif()
set(page_folder ${CMAKE_CURRENT_BINARY_DIR}/page)
set(preview_page_files ${page_folder}/index.html ${page_folder}/preview.js ${page_folder}/preview.css
                       ${page_folder}/licenses.txt)
file(GLOB page_sources CONFIGURE_DEPENDS ${page_source}/src/*.ts ${page_source}/*.html ${page_source}/style/*.css)

add_custom_command(
  OUTPUT ${page_packages}
  COMMAND ${page_install}
  COMMAND ${CMAKE_COMMAND} -E touch ${page_packages}
  DEPENDS ${page_source}/package.json ${page_source}/package-lock.json ${page_source}/.npmrc
  WORKING_DIRECTORY ${page_source}
  COMMENT "Installing the packages of the preview's page"
  VERBATIM)

add_custom_command(
  OUTPUT ${preview_page_files}
  COMMAND ${TAVRIN_NODE} build.mjs ${page_folder}
  DEPENDS ${page_packages} ${page_sources} ${page_source}/build.mjs
  WORKING_DIRECTORY ${page_source}
  COMMENT "Bundling the preview's page"
  VERBATIM)
