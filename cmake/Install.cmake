# What `cmake --install` puts where: libraries, headers, the CMake package, pkg-config files, programs.
# Components: runtime (what a finished game needs), development (what building one needs), programs (demo, game, tools);
# archive and debian are texts that only these packages hold (see Packages.cmake).
# SPDX-License-Identifier: MIT
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(kx_cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/kxgraphic)
set(kx_pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(
  TARGETS mmgr kxgraphic
  EXPORT kxgraphicTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/kxgraphic DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

install(EXPORT kxgraphicTargets NAMESPACE kxgraphic:: FILE kxgraphicConfig.cmake DESTINATION ${kx_cmake_folder}
        COMPONENT development)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kxgraphicConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kxgraphicConfigVersion.cmake DESTINATION ${kx_cmake_folder}
        COMPONENT development)

# Paths in the .pc files are relative to these: an unpacked archive works wherever it lies.
file(RELATIVE_PATH kx_prefix_from_pc /${kx_pkgconfig_folder} /)
string(REGEX REPLACE "/$" "" kx_prefix_from_pc "${kx_prefix_from_pc}")
foreach(module kxgraphic kxgraphic-mmgr)
  configure_file(packaging/${module}.pc.in ${PROJECT_BINARY_DIR}/${module}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${module}.pc DESTINATION ${kx_pkgconfig_folder} COMPONENT development)
endforeach()

if(WIN32)
  # Import libraries for compilers other than mingw-w64 are made of these.
  install(FILES ${PROJECT_BINARY_DIR}/exports/decorated/kxgraphic.def packaging/mmgr.def
          DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
else()
  # The memory manager lies beside the library, unless the program has brought its own.
  set_target_properties(kxgraphic PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

# Programs find the libraries wherever an archive is unpacked.
set(kx_shipped mmgr kxgraphic)
file(RELATIVE_PATH kx_libraries_from_programs ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
foreach(program kxdemo lagoon kxinfo)
  if(TARGET ${program})
    list(APPEND kx_shipped ${program})
    set_target_properties(${program} PROPERTIES INSTALL_RPATH "$ORIGIN/${kx_libraries_from_programs}")
    install(TARGETS ${program} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
  endif()
endforeach()

if(TARGET kxtrace)
  list(APPEND kx_shipped kxtrace)
  install(
    TARGETS kxtrace
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT programs)
endif()

# For those who build bindings, and for `source` in gdb.
install(FILES bindings/kxgraphic.json bindings/python/kxgraphic.py bindings/python/example.py tools/gdb/kxgraphic-gdb.py
        DESTINATION ${CMAKE_INSTALL_DATADIR}/kxgraphic COMPONENT development)

# All that is installed, and no tests or benchmarks.
add_custom_target(kx_shipped DEPENDS ${kx_shipped})
