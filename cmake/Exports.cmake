# The linker's files, made from the one list of exports (include/kxgraphic/exports/*.inc).
#
# Windows: every function is exported under its full decorated text ("_KX_lock@4"). The compiler's own symbol lacks the
# leading underscore in a .def file, hence lines `"_KX_lock@4" = "KX_lock@4"`; and the import library comes from dlltool
# with `"KX_lock@4" == "_KX_lock@4"`, as the linker's own would not link.
# ELF: a version script hides all other names, and a linker script adds the aliases of the slots of method tables that
# make the library a driver of itself ("_KX_lock").

set(KX_EXPORTS_FOLDER ${CMAKE_CURRENT_LIST_DIR}/../include/kxgraphic/exports)

# Reads the list: <entries> gets "kind|name|result|parameters" for each exported function, <tables> the names of exported
# data.
function(kx_read_list entries tables)
  file(GLOB lists CONFIGURE_DEPENDS ${KX_EXPORTS_FOLDER}/*.inc)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${lists})
  set(found_entries)
  set(found_tables)
  foreach(list_file IN LISTS lists)
    if(list_file MATCHES "/declare_(begin|end)\\.inc$")
      continue()
    endif()
    file(READ ${list_file} text)
    string(REGEX REPLACE "[;\n]" " " text "${text}")
    string(REGEX REPLACE "\\[" "" text "${text}")
    string(REGEX MATCHALL "KX_(METHOD|PLACEHOLDER|UNDESIGNED|FUNCTION)\\([A-Za-z0-9_]+,[^(]*\\([^()]*\\) *\\)" lines "${text}")
    foreach(line IN LISTS lines)
      string(REGEX MATCH "^KX_([A-Z]+)\\(([A-Za-z0-9_]+), *([^(]*), *\\(([^()]*)\\)" unused "${line}")
      set(name ${CMAKE_MATCH_2})
      if(NOT CMAKE_MATCH_1 STREQUAL "FUNCTION")
        set(name KX_${name})
      endif()
      list(APPEND found_entries "${CMAKE_MATCH_1}|${name}|${CMAKE_MATCH_3}|${CMAKE_MATCH_4}")
    endforeach()
    string(REGEX MATCHALL "KX_TABLE\\([A-Za-z0-9_]+" lines "${text}")
    list(TRANSFORM lines REPLACE "^KX_TABLE\\(" "")
    list(APPEND found_tables ${lines})
  endforeach()
  set(${entries} ${found_entries} PARENT_SCOPE)
  set(${tables} ${found_tables} PARENT_SCOPE)
endfunction()

# The same with <functions> as "name@bytes".
function(kx_read_exports functions tables)
  kx_read_list(entries found_tables)
  set(found_functions)
  foreach(entry IN LISTS entries)
    string(REGEX MATCH "^[A-Z]+\\|([^|]+)\\|[^|]+\\|(.*)$" unused "${entry}")
    set(name ${CMAKE_MATCH_1})
    # Every argument takes four bytes of the stack.
    if(CMAKE_MATCH_2 STREQUAL "void")
      set(bytes 0)
    else()
      string(REGEX MATCHALL "," commas "${CMAKE_MATCH_2}")
      list(LENGTH commas bytes)
      math(EXPR bytes "4 * (${bytes} + 1)")
    endif()
    list(APPEND found_functions ${name}@${bytes})
  endforeach()
  set(${functions} ${found_functions} PARENT_SCOPE)
  set(${tables} ${found_tables} PARENT_SCOPE)
endfunction()

# Makes <target> export the list and nothing else.
function(kx_export_list target)
  kx_read_exports(functions tables)
  set(folder ${PROJECT_BINARY_DIR}/exports)
  set(names ${functions})
  list(TRANSFORM names REPLACE "@.*" "")

  if(WIN32)
    set(exports ${functions})
    list(TRANSFORM exports REPLACE "(.+)" "  \"_\\1\" = \"\\1\"\n")
    set(imports ${functions})
    list(TRANSFORM imports REPLACE "(.+)" "  \"\\1\" == \"_\\1\"\n")
    set(data ${tables})
    list(TRANSFORM data REPLACE "(.+)" "  \\1 DATA\n")
    string(CONCAT exports "LIBRARY ${target}.dll\nEXPORTS\n" ${exports} ${data})
    string(CONCAT imports "LIBRARY ${target}.dll\nEXPORTS\n" ${imports} ${data})
    file(CONFIGURE OUTPUT ${folder}/${target}.def CONTENT "${exports}" @ONLY)
    file(CONFIGURE OUTPUT ${folder}/${target}_import.def CONTENT "${imports}" @ONLY)
    # For the tools of other compilers, which read a decorated name as the whole name of symbol and export.
    set(decorated ${functions})
    list(TRANSFORM decorated REPLACE "(.+)" "  _\\1\n")
    string(CONCAT decorated "LIBRARY ${target}.dll\nEXPORTS\n" ${decorated} ${data})
    file(CONFIGURE OUTPUT ${folder}/decorated/${target}.def CONTENT "${decorated}" @ONLY)
    target_sources(${target} PRIVATE ${folder}/${target}.def)
    add_custom_command(
      TARGET ${target} POST_BUILD
      COMMAND ${CMAKE_DLLTOOL} -m i386 -d ${folder}/${target}_import.def -l $<TARGET_LINKER_FILE:${target}>
      COMMENT "Making the import library of ${target}"
      VERBATIM)
  else()
    kx_read_list(slots unused)
    list(FILTER slots EXCLUDE REGEX "^FUNCTION")
    list(TRANSFORM slots REPLACE "^[A-Z]+\\|([^|]+)\\|.*" "_\\1")
    set(aliases ${slots})
    list(TRANSFORM aliases REPLACE "_(.+)" "_\\1 = \\1$<SEMICOLON>\n")
    set(visible ${names} ${slots} ${tables})
    list(TRANSFORM visible REPLACE "(.+)" "  \\1$<SEMICOLON>\n")
    string(CONCAT aliases ${aliases})
    string(CONCAT version "{ global:\n" ${visible} "local: *$<SEMICOLON>\n}$<SEMICOLON>\n")
    string(REPLACE "$<SEMICOLON>" ";" aliases "${aliases}")
    string(REPLACE "$<SEMICOLON>" ";" version "${version}")
    file(CONFIGURE OUTPUT ${folder}/aliases.ld CONTENT "${aliases}" @ONLY)
    file(CONFIGURE OUTPUT ${folder}/version.map CONTENT "${version}" @ONLY)
    target_link_options(${target} PRIVATE ${folder}/aliases.ld -Wl,--version-script=${folder}/version.map)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${folder}/aliases.ld ${folder}/version.map)
  endif()
endfunction()
