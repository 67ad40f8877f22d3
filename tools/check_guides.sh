#!/bin/bash
# Compiles every C fragment of docs/*.md as C11 with warnings as errors, natively and for 32-bit Windows. One whose first line
# names a file (/* name.c */) becomes a program that must end with 0, or without main a shared library beside it; one that
# begins with "windows:" is for that system only. The program of README.md is built by the commands that stand below it. Prints
# "N passed, N failed".
#   tools/check_guides.sh [FOLDER]    of the built libraries, build/release by default
# SPDX-License-Identifier: MIT
cd "$(dirname "$0")/.." || exit 1
root=$PWD libraries=$PWD/${1:-build/release}
passed=0 failed=0
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

flags=(-std=c11 -Wall -Wextra -Wpedantic -Werror -Wno-missing-prototypes -I"$root/include")
prelude='#include <kxgraphic/kxgraphic.h>
#include <kxgraphic/mmgr.h>
#include <stdlib.h>
#include <string.h>'

# check TEXT COMMAND...
check() {
  local text=$1
  shift
  if "$@" >"$work/log" 2>&1; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "$text"
    cat "$work/log"
  fi
}

for guide in docs/*.md; do
  name=$(basename "$guide" .md)
  mkdir -p "$work/$name"
  # One file for each fragment, with the guide's line numbers.
  awk -v stem="$work/$name/fragment" '
    /^```c$/ { file = stem (++n) ".c"; printf "#line %d \"%s\"\n", FNR + 1, FILENAME > file; inside = 1; next }
    /^```/ { inside = 0; next }
    inside { print > file }' "$guide"
  programs=()
  for fragment in "$work/$name"/fragment*.c; do
    [ -e "$fragment" ] || continue
    first=$(sed -n 2p "$fragment")
    if ! [[ $first =~ ^/\*\ ([a-z]+)\.c\ \*/$ ]]; then
      { echo "$prelude"; cat "$fragment"; } >"$fragment.full.c"
      [[ $first = "/* windows:"* ]] || check "$guide" cc "${flags[@]}" -fsyntax-only "$fragment.full.c"
      ! command -v i686-w64-mingw32-gcc >/dev/null ||
        check "$guide for Windows" i686-w64-mingw32-gcc "${flags[@]}" -fsyntax-only "$fragment.full.c"
      continue
    fi
    target=$work/$name/${BASH_REMATCH[1]}
    link=("$fragment" -L"$libraries" -lkxgraphic -lmmgr -Wl,-rpath,"$libraries")
    if grep -q 'int main' "$fragment"; then
      check "$guide: $target" cc "${flags[@]}" "${link[@]}" -o "$target"
      programs+=("$target")
    else
      check "$guide: $target" cc "${flags[@]}" -shared -fPIC "${link[@]}" -o "$target.so"
    fi
  done
  for program in "${programs[@]}"; do
    check "$guide: $program does not end with 0" env -C "$work/$name" "$program"
  done
done

# The program of README.md, built by the commands that stand below it, in a folder that looks like the project's.
readme=$work/readme
mkdir -p "$readme/build/win32"
ln -s "$root/include" "$readme/include"
ln -s "$libraries" "$readme/build/release"
awk '/^```c$/ { inside = 1; next } /^```/ { inside = 0 } inside' README.md >"$readme/hello.c"
check "README.md: its program" env -C "$readme" bash -c "$(grep '^    cc -std=c11 hello.c' README.md)"
if [ -e build/win32/libkxgraphic.dll.a ] && command -v i686-w64-mingw32-gcc >/dev/null; then
  ln -s "$root/build/win32/libkxgraphic.dll.a" "$readme/build/win32/"
  check "README.md: its program for Windows" env -C "$readme" bash -c "$(grep '^    i686-w64-mingw32-gcc' README.md)"
fi
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
