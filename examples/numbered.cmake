# The numbered examples: programs of one file each that write a picture. The pictures are held against those in
# docs/images/examples; after a wanted change the target example_pictures makes them anew.
file(GLOB numbered CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} [0-9][0-9]_*.c [0-9][0-9]_*.cpp)
set(picture_folder ${PROJECT_BINARY_DIR}/example_pictures)
file(MAKE_DIRECTORY ${picture_folder})

add_executable(compare_pictures compare_pictures.cpp)
target_link_libraries(compare_pictures PRIVATE example_stb)
set(pairs)
set(names)
foreach(source IN LISTS numbered)
  get_filename_component(name ${source} NAME_WE)
  add_executable(example_${name} ${source})
  list(APPEND names example_${name})
  list(APPEND pairs ${name}.bmp ${PROJECT_SOURCE_DIR}/docs/images/examples/${name}.png)
endforeach()

# The last one is built a second time, as the driver library that it loads.
add_library(sketch_driver MODULE 12_driver.c)
target_compile_definitions(sketch_driver PRIVATE SKETCH_DRIVER)
set_target_properties(sketch_driver PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${picture_folder})
add_dependencies(example_12_driver sketch_driver)

foreach(program IN LISTS names ITEMS sketch_driver compare_pictures)
  target_link_libraries(${program} PRIVATE kxgraphic mmgr kx_compiler_options)
  target_link_libraries(${program} PRIVATE $<$<NOT:$<BOOL:${WIN32}>>:m>)
  set_target_properties(${program} PROPERTIES BUILD_RPATH_USE_ORIGIN ON)
endforeach()

if(KX_TESTS)
  foreach(program IN LISTS names)
    add_test(NAME ${program} COMMAND ${program} WORKING_DIRECTORY ${picture_folder})
    set_tests_properties(${program} PROPERTIES FIXTURES_SETUP example_pictures)
  endforeach()
  add_test(NAME example_pictures COMMAND compare_pictures ${pairs} WORKING_DIRECTORY ${picture_folder})
  set_tests_properties(example_pictures PROPERTIES FIXTURES_REQUIRED example_pictures)
endif()

if(NOT CMAKE_CROSSCOMPILING)
  set(commands)
  foreach(program IN LISTS names)
    list(APPEND commands COMMAND ${program})
  endforeach()
  add_custom_target(
    example_pictures ${commands} COMMAND compare_pictures --write ${pairs}
    WORKING_DIRECTORY ${picture_folder} VERBATIM)
endif()
