#!/bin/bash
# Compiles every public header by itself, as C11 and as C++17 (kxgraphic.hpp as C++20), natively and for 32-bit Windows,
# with warnings as errors.
# SPDX-License-Identifier: MIT
cd "$(dirname "$0")/.." || exit 1
passed=0 failed=0

# check LANGUAGE STANDARD HEADER COMPILER...
check() {
  local language=$1 standard=$2 header=$3 compiler
  shift 3
  for compiler; do
    command -v "$compiler" >/dev/null || continue
    if echo "#include \"kxgraphic/$header\"" |
      "$compiler" -x "$language" -std="$standard" -Iinclude -Wall -Wextra -Wpedantic -Werror -fsyntax-only -; then
      passed=$((passed + 1))
    else
      echo "$header does not pass $compiler as $standard"
      failed=$((failed + 1))
    fi
  done
}

for header in include/kxgraphic/*.h include/kxgraphic/*.hpp; do
  [ -e "$header" ] || continue
  name=${header##*/}
  standard=c++17
  [ "$name" != kxgraphic.hpp ] || standard=c++20
  check c++ "$standard" "$name" g++ clang++ i686-w64-mingw32-g++
  # Headers for C++ alone end in .hpp.
  [[ $name = *.hpp ]] || check c c11 "$name" gcc clang i686-w64-mingw32-gcc
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
