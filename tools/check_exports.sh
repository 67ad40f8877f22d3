#!/bin/bash
# Compares the names that a built library exports with those that its snapshot promises (docs/versioning.md):
#   tools/check_exports.sh build/<preset>/<library>
# A Windows library must also stay small, and ask for nothing but what Windows XP has.
# SPDX-License-Identifier: MIT
library=$1
[ -e "$library" ] || { echo "$library is not there"; echo "0 passed, 1 failed"; exit 1; }
snapshots=$(dirname "$0")/../tests/interface/snapshot
expected=$(mktemp)
found=$(mktemp)
trap 'rm -f "$expected" "$found"' EXIT

promised() { sed -n 's/^export //p' "$snapshots/$1" | LC_ALL=C sort >"$expected"; }

case $library in
  *.dll)
    promised win32.txt
    i686-w64-mingw32-objdump -p "$library" | awk '
      /^\[Ordinal\/Name Pointer\] Table/ { names = 1; next }
      names && /^[[:space:]]*\[ *[0-9]+\]/ { print $NF; next }
      names { exit }' | LC_ALL=C sort >"$found"
    ;;
  *)
    promised linux-x86-64.txt
    nm --dynamic --defined-only "$library" | awk '{ print $3 }' | LC_ALL=C sort >"$found"
    ;;
esac

# Bytes that a game ships: without the debug information.
largest=1000000
faults=0
if [[ $library = *.dll ]]; then
  stripped=$(mktemp)
  i686-w64-mingw32-strip -o "$stripped" "$library" && size=$(stat -c %s "$stripped")
  rm -f "$stripped"
  echo "$library takes $size bytes stripped, $largest at most"
  [ "$size" -le "$largest" ] || faults=$((faults + 1))
  # Other libraries, and a function that the C++ runtime would like.
  if i686-w64-mingw32-objdump -p "$library" | grep -E 'DLL Name: |GetTickCount64' |
    grep -vE 'DLL Name: (GDI32|KERNEL32|USER32|msvcrt|mmgr)\.dll'; then
    echo "$library should not import the above"
    faults=$((faults + 1))
  fi
fi

LC_ALL=C comm -23 "$expected" "$found" | sed "s|^|$library lacks |"
LC_ALL=C comm -13 "$expected" "$found" | sed "s|^|$library exports without a promise: |"
passed=$(LC_ALL=C comm -12 "$expected" "$found" | wc -l)
failed=$(LC_ALL=C comm -3 "$expected" "$found" | wc -l)
[ -s "$found" ] || failed=$((failed + 1))
failed=$((failed + faults))
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
