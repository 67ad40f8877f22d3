#!/bin/bash
# Every family of exports has a scene of the tour that names at least one of its functions in a caption. Prints the families
# without one and how many functions are named, then "N passed, N failed", where N counts families.
# SPDX-License-Identifier: MIT
cd "$(dirname "$0")/.." || exit 1
passed=0 failed=0 named=0 all=0
# Captions are the only texts of the scenes that hold names of functions; "KX_a, ...B" counts for KX_a.
captions=$(grep -ohE '"([^"\\]|\\.)*"' examples/kxdemo/*.cpp | grep -oE '\b(KX|LS|LZ|RLE)_[A-Za-z0-9_]+' | sort -u)
for family in include/kxgraphic/exports/*.inc; do
  # These return 6 and draw nothing.
  [ "${family##*/}" != undesigned_methods.inc ] || continue
  names=$(sed -nE 's/^KX_METHOD\(([A-Za-z0-9_]+),.*/KX_\1/p; s/^KX_FUNCTION\(([A-Za-z0-9_]+),.*/\1/p' "$family" | sort -u)
  [ -n "$names" ] || continue
  shown=$(comm -12 <(echo "$names") <(echo "$captions") | wc -l)
  named=$((named + shown)) all=$((all + $(wc -l <<<"$names")))
  if [ "$shown" -gt 0 ]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "no scene names a function of $family"
  fi
done
echo "captions name $named of $all functions"
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
