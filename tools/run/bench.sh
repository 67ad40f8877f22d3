# ./run bench and ./run count: how fast the library is, and how many instructions it takes.
# SPDX-License-Identifier: MIT

# --windows, first: the Windows build under Wine, beside GDI.
run_bench() {
  if [ "${1:-}" = --windows ]; then
    shift
    need_packages build win32
    lock_build
    configure win32 && cmake -DKX_BENCH=ON build/win32 >"$log" 2>&1 && build win32 kxbench || fail_with_log "$log"
    say "getting Wine ready"
    # The lock of the build must not live on in Wine's server.
    prepare_wine >"$logs/wine.log" 2>&1 </dev/null 9>&- || fail_with_log "$logs/wine.log"
    tools/wine-run build/win32/kxbench.exe "$@"
    return
  fi
  need_packages build bench
  lock_build
  configure release && build release kxbench || fail_with_log "$log"
  build/release/kxbench "$@"
}

run_count() {
  case ${1:-} in --renew | '') ;; *) die 2 "count knows --renew only, not $1" ;; esac
  need_packages build counts
  lock_build
  configure release && build release kxcount kxstartup kxgraphic || fail_with_log "$log"
  tools/check_counts.sh build/release "$@"
}
