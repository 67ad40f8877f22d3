# The packages that CPack makes: an archive of everything, on Linux also .deb of the library, of what builds programs with it,
# and of the programs.
# SPDX-License-Identifier: MIT
if(WIN32)
  set(kx_line_ends CRLF) # which old editors need
else()
  set(kx_line_ends LF)
endif()
foreach(file packaging/README.txt LICENSE CHANGELOG.md)
  cmake_path(GET file FILENAME name)
  configure_file(${file} ${PROJECT_BINARY_DIR}/archive/${name} @ONLY NEWLINE_STYLE ${kx_line_ends})
  install(FILES ${PROJECT_BINARY_DIR}/archive/${name} DESTINATION . COMPONENT archive EXCLUDE_FROM_ALL)
endforeach()

set(CPACK_PACKAGE_NAME kxgraphic)
set(CPACK_PACKAGE_VENDOR kxgraphic)
# No address that belongs to somebody: who hands packages out gives an own one.
set(CPACK_PACKAGE_CONTACT "kxgraphic developers <developers@kxgraphic.invalid>" CACHE STRING "Maintainer of the packages")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "software graphics library for 2D and 3D games")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_SOURCE_DIR}/build/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development programs archive)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/packaging/options.cmake)

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME win32)
  include(CPack)
  return()
endif()

set(CPACK_GENERATOR TGZ)
set(CPACK_SYSTEM_NAME linux-${CMAKE_SYSTEM_PROCESSOR})

# kx_debian_package(<component> <package> SECTION <section> SUMMARY <line> TEXT <lines>...)
function(kx_debian_package component package)
  cmake_parse_arguments(package "" "SECTION;SUMMARY" "TEXT" ${ARGN})
  string(TOUPPER ${component} upper)
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${package})
  install(FILES LICENSE DESTINATION ${documents} RENAME copyright COMPONENT debian-${component} EXCLUDE_FROM_ALL)
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${documents} COMPONENT debian-${component} EXCLUDE_FROM_ALL)
  set(CPACK_COMPONENT_${upper}_GROUP ${component} PARENT_SCOPE)
  set(CPACK_COMPONENT_DEBIAN-${upper}_GROUP ${component} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package} PARENT_SCOPE)
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION ${package_SECTION} PARENT_SCOPE)
  list(JOIN package_TEXT "\n" text)
  set(CPACK_DEBIAN_${upper}_DESCRIPTION "${package_SUMMARY}\n${text}" PARENT_SCOPE)
endfunction()

# The same bytes each time.
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS CHANGELOG.md)
execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.gz)
set(library libkxgraphic${PROJECT_VERSION_MAJOR})
set(summary ${CPACK_PACKAGE_DESCRIPTION_SUMMARY})
kx_debian_package(
  runtime ${library} SECTION libs SUMMARY "${summary}" TEXT
  "Images in six pixel formats, blits with colour key, alpha and depth, drawing,"
  "palettes, a screen, textured triangles, landscapes and coders, all drawn by"
  "the processor."
  "This package holds the shared library and its memory manager.")
kx_debian_package(
  development libkxgraphic-dev SECTION libdevel SUMMARY "${summary}, for building programs" TEXT
  "Headers, CMake package and pkg-config files for programs that use the library,"
  "a description of its interface for bindings, and a Python module."
  "It teaches gdb to show bitmaps.")
kx_debian_package(
  programs kxgraphic-tools SECTION graphics SUMMARY "${summary}, demo and tools" TEXT
  "kxdemo is a tour of the library, lagoon a small game, kxinfo tells what a"
  "report of a fault should say, and libkxtrace.so, preloaded, writes down the"
  "calls of a program.")
# gdb looks there for the script of a library by the library's own path.
install(FILES tools/gdb/kxgraphic-gdb.py DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR}
        RENAME libkxgraphic.so.${PROJECT_VERSION}-gdb.py COMPONENT debian-development EXCLUDE_FROM_ALL)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
# Of the libraries that files are linked with; SDL2 is loaded when a screen needs it.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS libsdl2-2.0-0)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION})")
# Packages of programs linked with the library find out that they depend on it, and the loader's cache knows it.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
include(CPack)
