# Fails unless the C program in README.md is examples/hello.c: cmake -DROOT=<project> -P CompareReadme.cmake
file(READ ${ROOT}/README.md readme)
file(READ ${ROOT}/examples/hello.c program)
string(FIND "${readme}" "```c\n${program}```" position)
if(position EQUAL -1)
  message(FATAL_ERROR "The C program in README.md and examples/hello.c differ")
endif()
