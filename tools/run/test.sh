# ./run test: stages one after the other, each with a log, a line and a count; a failed stage does not stop the others.
# SPDX-License-Identifier: MIT

# A stage prints its progress to descriptor 3, everything else goes to its log. It adds "passed failed" lines to $counts.
count() { echo "$1 $2" >>"$counts"; }

# tested PRESET COMMAND...: ctest over a build folder. Cases of GoogleTest count one by one, other tests as one.
tested() {
  local preset=$1 output=$logs/$1-ctest.log status
  shift
  "$@" ctest --preset "$preset" -V --timeout 600 </dev/null >"$output" 2>&1
  status=$?
  tr -d '\r' <"$output" | awk -v status="$status" '
    match($0, /^[0-9]+: /) { test = $1 + 0 }
    /^[0-9]+: \[  PASSED  \] [0-9]+ test/ { passed[test] += $5 }
    /^[0-9]+: \[  FAILED  \] [0-9]+ tests?, listed/ { failed[test] += $5 }
    /^ *[0-9]+\/[0-9]+ Test +#[0-9]+:/ {
      sub(/.*Test +#/, ""); test = $0 + 0
      if (/ Passed /) { p += (test in passed) ? passed[test] : 1 }
      else { p += passed[test]; f += (failed[test] > 0) ? failed[test] : 1 }
    }
    END { if (status && !f) f = 1; if (!status && !p) { f = 1 } print p + 0, f + 0 }' >>"$counts"
  if [ "$status" != 0 ]; then
    grep -aE 'FAILED|Failure|runtime error|ERROR: |\*\*\*' "$output" | head -n 40
    tail -n 25 "$output"
  fi
  return "$status"
}

# built PRESET: configured and built, or a failure
built() {
  configure "$1" >&3 && build "$1" >&3 && return 0
  grep -E 'error|warning|FAILED' "$log" | head -n 20
  tail -n 20 "$log"
  count 0 1
  return 1
}

stage_release() { built release && tested release; }
stage_clang() { built clang && tested clang; }

stage_asan() {
  # Some kernels place programs where the sanitizer wants its shadow memory.
  local fixed=()
  setarch -R true 2>/dev/null && fixed=(setarch -R)
  built asan && tested asan "${fixed[@]}"
}

stage_win32() {
  built win32 || return 1
  say "waiting for Wine" >&3
  if ! wait "$wine_job"; then
    cat "$logs/wine.log"
    {
      echo "***********************************************************************"
      echo "*** NO WINE: the Windows library is built, but its tests DID NOT RUN."
      tail -n 3 "$logs/wine.log" | sed 's/^/*** /'
      echo "***********************************************************************"
    } >&3
    skipped="NOT RUN, no Wine"
    no_wine=1
    [ "${CI:-}" != true ] || { count 0 1; return 1; }
    return 0
  fi
  say "testing under Wine" >&3
  tested win32 tools/wine-run --screen
  local status=$?
  tools/wine-run --stop
  return "$status"
}

stage_headers() { tools/check_headers.sh; }
stage_house() { tools/check_house.sh; }
stage_exports() {
  local status=0
  tools/check_exports.sh build/release/libkxgraphic.so || status=1
  tools/check_exports.sh build/win32/kxgraphic.dll || status=1
  return "$status"
}

stage_docs() {
  local status=0
  if make_docs >&3; then count 1 0; else cat "$log"; count 0 1; status=1; fi
  tools/check_guides.sh || status=1
  return "$status"
}
stage_packages() {
  make_packages >&3 || { tail -n 20 "$log"; return 1; }
  tools/check_packages.sh ${no_wine:+--no-wine}
}

stage_counts() {
  local status
  if [ -z "$(missing_packages counts)" ]; then
    build release kxcount kxstartup kxgraphic >&3 || { tail -n 20 "$log"; return 1; }
  fi
  tools/check_counts.sh build/release
  status=$?
  [ "$status" != 77 ] || { skipped=$(sed -n 's/^not compared: /NOT RUN, /p' "$logs/counts.log"); return 0; }
  return "$status"
}

# run_stage NAME TITLE: the scripts of tools/ end their output with a line "N passed, N failed", which counts too
run_stage() {
  local name=$1 title=$2 begin=$SECONDS status passed failed skipped= mark=ok
  counts=$logs/$name.counts
  : >"$counts"
  say "$title"
  "stage_$name" 3>&1 >"$logs/$name.log" 2>&1
  status=$?
  sed -nE 's/^([0-9]+) passed, ([0-9]+) failed$/\1 \2/p' "$logs/$name.log" >>"$counts"
  read -r passed failed < <(awk '{ p += $1; f += $2 } END { print p + 0, f + 0 }' "$counts")
  [ "$status" = 0 ] || [ "$failed" -gt 0 ] || failed=1
  if [ "$failed" -gt 0 ]; then
    mark=FAILED
    cat "$logs/$name.log"
    say "the logs are in $logs"
  fi
  total_passed=$((total_passed + passed))
  total_failed=$((total_failed + failed))
  summary+=("$(printf '%-52s %-6s %6d passed %4d failed %5d s  %s' "$title" "$mark" "$passed" "$failed" \
    $((SECONDS - begin)) "$skipped")")
}

run_tests() {
  local quick= summary=() total_passed=0 total_failed=0 begin=$SECONDS wine_job= no_wine=
  case ${1:-} in
    --quick) quick=1 ;;
    '') ;;
    *) die 2 "test knows --quick only, not $1" ;;
  esac
  if [ -n "$quick" ]; then need_packages build tests demo; else need_packages build tests demo clang win32 package docs counts; fi
  lock_build
  rm -f "$logs"/*.log "$logs"/*.counts
  if [ -z "$quick" ]; then
    # The first time takes a minute, mostly of the network: beside the builds.
    prepare_wine >"$logs/wine.log" 2>&1 </dev/null 9>&- &
    wine_job=$!
    children+=("$wine_job")
  fi
  run_stage release "native, g++"
  if [ -z "$quick" ]; then
    run_stage counts "counted instructions, against the baseline"
    run_stage house "the rules of the house"
    run_stage asan "native, address and undefined behaviour sanitizers"
    run_stage clang "native, clang++"
    run_stage win32 "32-bit Windows under Wine"
    run_stage headers "public headers as C11 and C++17"
    run_stage exports "exported names of both libraries"
    run_stage docs "reference and guides"
    run_stage packages "packages: installed and used"
  fi
  echo
  printf '%s\n' "${summary[@]}"
  echo "all in $((SECONDS - begin)) s"
  echo "$total_passed passed, $total_failed failed"
  [ "$total_failed" = 0 ]
}
