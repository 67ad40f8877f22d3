# Fails unless two texts are the same, and shows where they differ: cmake -DFOUND=<file> -DWANTED=<file> -P CompareText.cmake
file(STRINGS ${FOUND} found ENCODING UTF-8)
file(STRINGS ${WANTED} wanted ENCODING UTF-8)
if(NOT found STREQUAL wanted)
  execute_process(COMMAND diff -u ${WANTED} ${FOUND})
  message(FATAL_ERROR "The interface differs from ${WANTED}. If it is meant to (docs/versioning.md): ./run interface")
endif()
