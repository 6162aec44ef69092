# SPDX-License-Identifier: MIT
# What is installed, in three components, which are packages of their own: see package.cmake.
include(CMakePackageConfigHelpers)

# The static library for programs in C++.
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tavrin)
set_target_properties(tavrin_platform PROPERTIES EXPORT_NAME platform)
install(TARGETS tavrin tavrin_platform EXPORT tavrinTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library)
install(EXPORT tavrinTargets NAMESPACE tavrin:: DESTINATION ${package_dir} COMPONENT development)
install(CODE "set(source \"${PROJECT_SOURCE_DIR}\")\nset(include_dir \"${CMAKE_INSTALL_INCLUDEDIR}\")"
        COMPONENT development)
install(SCRIPT cmake/install_headers.cmake COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tavrinConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/tavrinConfig.cmake ${PROJECT_SOURCE_DIR}/cmake/dependencies.cmake
              ${PROJECT_BINARY_DIR}/tavrinConfigVersion.cmake DESTINATION ${package_dir} COMPONENT development)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)

# The shared library for programs in C and for whatever calls C.
if(TAVRIN_C)
  install(TARGETS tavrin_c LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development)
  install(FILES ${PROJECT_SOURCE_DIR}/bindings/c/tavrin/tavrin_c.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tavrin
          COMPONENT development)
  install(FILES ${PROJECT_BINARY_DIR}/bindings/c/tavrin-c.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
          COMPONENT development)
endif()

# The program, with what shells complete and `man` shows, which it tells itself.
if(TAVRIN_PROGRAM)
  install(TARGETS tavrin_program RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT program)
  install(FILES ${PROJECT_BINARY_DIR}/LICENSES.txt DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT program)
  # For systemd, which nothing is told of: who wants the server enables it.
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/tavrin.service ${PROJECT_SOURCE_DIR}/packaging/tavrin.socket
          DESTINATION lib/systemd/system COMPONENT program)
  install(FILES ${PROJECT_SOURCE_DIR}/packaging/serve.toml DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples
          COMPONENT program)
  foreach(setting tavrin_program=$<TARGET_FILE:tavrin_program> source=${PROJECT_SOURCE_DIR}
                  data_dir=${CMAKE_INSTALL_DATADIR} man_dir=${CMAKE_INSTALL_MANDIR})
    string(REPLACE "=" " \"" setting ${setting})
    install(CODE "set(${setting}\")" COMPONENT program)
  endforeach()
  install(SCRIPT cmake/install_program_texts.cmake COMPONENT program)
endif()
