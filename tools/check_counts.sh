#!/bin/bash
# Counts the instructions of kxcount's pieces of work under callgrind and those of loading the library, and what the
# loader has to write; compares all with bench/instruction_counts.txt:
#   tools/check_counts.sh FOLDER [--renew]   (FOLDER: where kxcount, kxstartup and the library were built with g++)
# SPDX-License-Identifier: MIT
folder=$1
baseline=bench/instruction_counts.txt
tolerance=5 # per cent that a count may grow; code laid out differently is no news
# Exit code for "cannot be compared here".
skip() { echo "not compared: $*"; echo "0 passed, 0 failed"; exit 77; }

command -v valgrind >/dev/null || skip "valgrind is missing"
compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$folder/CMakeCache.txt")
compiler="g++ $("$compiler" -dumpfullversion), C library $(getconf GNU_LIBC_VERSION)"
[ "${2:-}" = --renew ] || grep -qxF "# $compiler" "$baseline" ||
  skip "the baseline is of another compiler than $compiler"

dumps=$(mktemp -d)
trap 'rm -rf "$dumps"' EXIT
valgrind --tool=callgrind --collect-atstart=no --callgrind-out-file="$dumps/count" "$folder/kxcount" >"$dumps/log" 2>&1
status=$?
[ "$status" != 3 ] || skip "the processor lacks AVX2"
[ "$status" = 0 ] || { cat "$dumps/log"; echo "0 passed, 1 failed"; exit 1; }

# Start-up: from before the library is loaded to the end of its first use; without a clock, as those depend on the load.
library=$folder/libkxgraphic.so
valgrind --tool=callgrind --collect-atstart=no --toggle-collect='*startHere*' --callgrind-out-file="$dumps/startup" \
  "$folder/kxstartup" --once "$library" >"$dumps/log" 2>&1 || { cat "$dumps/log"; echo "0 passed, 1 failed"; exit 1; }
{
  awk '/^totals:/ { print "startup.instructions", $2 }' "$dumps/startup"
  echo "startup.relocations $(readelf -rW "$library" | grep -c ' R_')"
  writable=$(readelf -lW "$library" | awk '$1 == "LOAD" && / RW / { print $6 }')
  echo "startup.writable_pages $(((writable + 4095) / 4096))"
} >"$dumps/startup_counts"

awk '/^desc: Trigger: Client Request: / { name = $NF }
     /^totals:/ && name != "" { print name, $2; name = "" }' "$dumps"/count.* |
  LC_ALL=C sort - "$dumps/startup_counts" >"$dumps/counts"

if [ "${2:-}" = --renew ]; then
  { echo "# Instructions of each piece of work in bench/count.cpp, and of start-up; renewed by ./run count --renew, never by hand."
    echo "# $compiler"
    cat "$dumps/counts"; } >"$baseline"
  echo "$(wc -l <"$dumps/counts") counts are now the baseline: $baseline"
  exit 0
fi

awk -v tolerance="$tolerance" '
  /^#/ { next }
  FNR == NR { kept[$1] = $2; next }
  !($1 in kept) { print $1 " is not in the baseline"; failed++; next }
  {
    change = 100 * ($2 / kept[$1] - 1)
    if (change > tolerance) { printf "%s takes %d, %.1f %% more than %d\n", $1, $2, change, kept[$1]; failed++ }
    else passed++
    if (change < -tolerance) printf "%s takes %d, %.1f %% less than %d: renew the baseline\n", $1, $2, -change, kept[$1]
    delete kept[$1]
  }
  END {
    for (name in kept) { print name " is in the baseline but was not counted"; failed++ }
    if (failed) print "If that is meant to be: ./run count --renew"
    printf "%d passed, %d failed\n", passed, failed
    exit failed > 0
  }' "$baseline" "$dumps/counts"
