# Warnings and code generation shared by everything built here (not by users of the library).
add_library(kx_compiler_options INTERFACE)
target_compile_options(
  kx_compiler_options
  INTERFACE -Wall -Wextra -Wpedantic $<$<BOOL:${PROJECT_IS_TOP_LEVEL}>:-Werror> -Wconversion -Wsign-conversion -Wshadow -Wformat=2 -Wundef
            $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual -fno-threadsafe-statics>)

if(KX_SANITIZE)
  # Exported functions are called through tables of the C interface, which the function sanitizer does not know.
  # Lines in reports and little optimisation: the checks make higher levels slow to compile and prone to false warnings.
  add_compile_options(-O1 -g1 -fsanitize=${KX_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
                      $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  add_compile_definitions(NDEBUG)
  add_link_options(-fsanitize=${KX_SANITIZE})
  if(KX_SANITIZE MATCHES memory)
    add_compile_options(-fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/memory_sanitizer.txt
                        -fsanitize-memory-track-origins)
  endif()
endif()

if(KX_COVERAGE)
  add_compile_options(-O0 -g1)
  add_compile_definitions(NDEBUG)
  add_link_options(--coverage)
endif()

if(WIN32)
  # Callers compiled for old Windows keep the stack aligned to 4 bytes only. SSE arithmetic keeps results independent of
  # the x87 unit's precision, which games change.
  add_compile_options(-march=pentium4 -mtune=generic -msse2 -mfpmath=sse -mstackrealign)
  add_compile_definitions(_WIN32_WINNT=0x0501 WINVER=0x0501)
  # No library beside the program but the memory manager; the same bytes from the same sources.
  add_link_options(-static -static-libgcc -static-libstdc++ -Wl,--no-insert-timestamp)
endif()
