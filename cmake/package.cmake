# SPDX-License-Identifier: MIT
# Debian packages and an archive of the same, with `cpack`: the program, the C library, and what is needed to build
# with either library.
set(CPACK_PACKAGE_NAME tavrin)
set(CPACK_PACKAGE_VENDOR "Tavrin")
set(CPACK_PACKAGE_CONTACT "Tavrin maintainers <maintainers@tavrin.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "renders home-screen widgets from small JSON documents")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_COMPONENTS_ALL program library development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                                                WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(fonts "fonts-inter, fonts-noto-color-emoji")
# What is opened when it is needed, and no linker sees.
set(opened "libcurl4, libidn2-0, tzdata")

set(about "Tavrin draws the widgets of a phone's home screen from documents in a small
declarative language, as the phone would, on any Linux machine: as pictures,
with every view's place, and with what is wrong or doubtful in them.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME tavrin)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION graphics)
# Scripts that the system font lacks.
set(CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS "fonts-noto-core, fonts-noto-cjk")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS ${CPACK_DEBIAN_PROGRAM_PACKAGE_RECOMMENDS})
set(CPACK_DEBIAN_PROGRAM_PACKAGE_DEPENDS "${fonts}, ${opened}")
set(CPACK_DEBIAN_PROGRAM_DESCRIPTION "${about}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libtavrin-c0)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "${fonts}, ${opened}")
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION
    "${about}\n\nThis is the library that programs in C, or that call C, use.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtavrin-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
file(STRINGS ${PROJECT_SOURCE_DIR}/scripts/packages/program.txt lines)
set(linked)
set(isLibrary OFF)
foreach(line ${lines})
  if(line MATCHES "^# libraries, which programs that use Tavrin")
    set(isLibrary ON)
  elseif(line MATCHES "^#")
    set(isLibrary OFF)
  elseif(isLibrary AND line MATCHES "^([a-z0-9.+-]+)")
    string(APPEND linked ", ${CMAKE_MATCH_1}")
  endif()
endforeach()
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libtavrin-c0 (= ${PROJECT_VERSION})${linked}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
    "${about}\n\nThese are the headers, the static library for programs in C++, and what CMake\nand pkg-config read.")

# What Debian's policy wants beside the files.
set(deb_dir ${PROJECT_BINARY_DIR}/debian)
file(MAKE_DIRECTORY ${deb_dir})
foreach(component program library development)
  string(TOUPPER ${component} upper)
  set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  install(FILES ${PROJECT_BINARY_DIR}/LICENSES.txt RENAME copyright DESTINATION share/doc/${package}
          COMPONENT ${component})
  install(FILES ${deb_dir}/changelog.gz DESTINATION share/doc/${package} COMPONENT ${component})
endforeach()
# Who is linked with the library needs its package, and the loader has to learn of it.
file(WRITE ${deb_dir}/shlibs "libtavrin_c 0 libtavrin-c0 (>= ${PROJECT_VERSION})\n")
file(WRITE ${deb_dir}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${deb_dir}/shlibs ${deb_dir}/triggers)
# The program carries some libraries in itself on purpose, so that it starts sooner: see static_parts.cmake.
file(WRITE ${deb_dir}/overrides "tavrin: embedded-library *\n")
install(FILES ${deb_dir}/overrides RENAME tavrin DESTINATION share/lintian/overrides COMPONENT program)
string(TIMESTAMP today "%a, %d %b %Y 00:00:00 +0000" UTC)
file(WRITE ${deb_dir}/changelog
     "tavrin (${PROJECT_VERSION}) unstable; urgency=medium\n\n  * See CHANGELOG.md in the sources.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${today}\n")
execute_process(COMMAND gzip --best --no-name --force --keep ${deb_dir}/changelog COMMAND_ERROR_IS_FATAL ANY)

include(CPack)
