# SPDX-License-Identifier: MIT
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tavrin)

set_target_properties(tavrin_platform PROPERTIES EXPORT_NAME platform)
install(TARGETS tavrin tavrin_platform EXPORT tavrinTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT tavrinTargets NAMESPACE tavrin:: DESTINATION ${package_dir})

install(CODE "set(source \"${PROJECT_SOURCE_DIR}\")\nset(include_dir \"${CMAKE_INSTALL_INCLUDEDIR}\")")
install(SCRIPT cmake/install_headers.cmake)

write_basic_package_version_file(${PROJECT_BINARY_DIR}/tavrinConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/tavrinConfig.cmake ${PROJECT_SOURCE_DIR}/cmake/dependencies.cmake
              ${PROJECT_BINARY_DIR}/tavrinConfigVersion.cmake DESTINATION ${package_dir})

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
if(TAVRIN_PROGRAM)
  install(TARGETS tavrin_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${PROJECT_BINARY_DIR}/LICENSES.txt DESTINATION ${CMAKE_INSTALL_DOCDIR})
endif()
