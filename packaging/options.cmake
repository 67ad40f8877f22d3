# What differs between the package formats; CPack reads it once for each.
# SPDX-License-Identifier: MIT
if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_COMPONENTS_ALL runtime development programs debian-runtime debian-development debian-programs)
  # Each package brings its own first line.
  set(CPACK_PACKAGE_DESCRIPTION_SUMMARY)
else()
  set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
endif()
