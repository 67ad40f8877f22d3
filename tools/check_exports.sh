#!/bin/bash
# Compares the names that a built library exports with the list: tools/check_exports.sh build/<preset>/<library>
# SPDX-License-Identifier: MIT
library=$1
[ -e "$library" ] || { echo "$library is not there"; echo "0 passed, 1 failed"; exit 1; }
lists=$(dirname "$library")/exports
expected=$(mktemp)
found=$(mktemp)
trap 'rm -f "$expected" "$found"' EXIT

case $library in
  *.dll) # decorated names, and the tables
    { sed 's/^/_/' "$lists/functions.txt"; cat "$lists/tables.txt"; } | sed '/^_*$/d' | sort >"$expected"
    i686-w64-mingw32-objdump -p "$library" | awk '
      /^\[Ordinal\/Name Pointer\] Table/ { names = 1; next }
      names && /^[[:space:]]*\[ *[0-9]+\]/ { print $NF; next }
      names { exit }' | sort >"$found"
    ;;
  *) # plain names, their aliases with an underscore, and the tables
    { sed 's/@.*//; p; s/^/_/' "$lists/functions.txt"; cat "$lists/tables.txt"; } | sed '/^_*$/d' | sort >"$expected"
    nm --dynamic --defined-only "$library" | awk '{ print $3 }' | sort >"$found"
    ;;
esac

comm -23 "$expected" "$found" | sed "s|^|$library lacks |"
comm -13 "$expected" "$found" | sed "s|^|$library exports against the list: |"
passed=$(comm -12 "$expected" "$found" | wc -l)
failed=$(comm -3 "$expected" "$found" | wc -l)
[ -s "$found" ] || failed=$((failed + 1))
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
