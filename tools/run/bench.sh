# ./run bench and ./run count: how fast the library is, and how many instructions it takes.
# SPDX-License-Identifier: MIT

run_bench() {
  need_packages build bench
  lock_build
  configure release && build release kxbench || fail_with_log "$log"
  build/release/kxbench "$@"
}

run_count() {
  case ${1:-} in --renew | '') ;; *) die 2 "count knows --renew only, not $1" ;; esac
  need_packages build counts
  lock_build
  configure release && build release kxcount || fail_with_log "$log"
  tools/check_counts.sh build/release "$@"
}
