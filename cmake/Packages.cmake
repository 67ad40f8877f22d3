# The packages that CPack makes: an archive of everything, on Linux also .deb of the library and of its headers.
# SPDX-License-Identifier: MIT
install(FILES packaging/README.txt LICENSE CHANGELOG.md DESTINATION . COMPONENT archive EXCLUDE_FROM_ALL)

set(CPACK_PACKAGE_NAME kxgraphic)
set(CPACK_PACKAGE_VENDOR kxgraphic)
set(CPACK_PACKAGE_CONTACT "kxgraphic developers <kxgraphic@localhost>")
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
else()
  set(CPACK_GENERATOR TGZ)
  set(CPACK_SYSTEM_NAME linux-${CMAKE_SYSTEM_PROCESSOR})
  foreach(component runtime development)
    string(TOUPPER ${component} upper)
    string(REPLACE runtime libkxgraphic${PROJECT_VERSION_MAJOR} name ${component})
    string(REPLACE development libkxgraphic-dev name ${name})
    install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} RENAME copyright COMPONENT debian-${component}
            EXCLUDE_FROM_ALL)
    set(CPACK_COMPONENT_${upper}_GROUP ${component})
    set(CPACK_COMPONENT_DEBIAN-${upper}_GROUP ${component})
    set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${name})
  endforeach()
  # gdb looks there for the script of a library by the library's own path.
  install(FILES tools/gdb/kxgraphic-gdb.py DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR}
          RENAME libkxgraphic.so.${PROJECT_VERSION}-gdb.py COMPONENT debian-development EXCLUDE_FROM_ALL)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${CPACK_PACKAGE_CONTACT})
  set(summary ${CPACK_PACKAGE_DESCRIPTION_SUMMARY})
  set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
      "${summary}\nImages in six pixel formats, blits with colour key, alpha and depth, drawing, palettes, a screen, textured triangles, landscapes and coders, all drawn by the processor.\n\nThis package holds the shared library and its memory manager.")
  set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
      "${summary} - development files\nHeaders, CMake package and pkg-config files for programs that use the library.")
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  # Of the libraries that it is linked with; SDL2 is loaded when a screen needs it.
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
  set(CPACK_DEBIAN_RUNTIME_PACKAGE_RECOMMENDS libsdl2-2.0-0)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libkxgraphic${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")
endif()
include(CPack)
