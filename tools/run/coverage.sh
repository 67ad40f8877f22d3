# ./run coverage: what the tests run of the library's own code, by gcov's counts, against the limits.
# SPDX-License-Identifier: MIT
least_lines=95    # per cent
least_branches=85 # per cent

# The tests that run the library's code: all but those of the tools and bindings beside it.
covering_tests='^kx_(tests|interface_tests|host_memory_tests|client_|display_tests|fuzz_)'

run_coverage() {
  [ $# = 0 ] || die 2 "coverage takes no options, not $*"
  need_packages build tests coverage
  lock_build
  { configure coverage && build coverage; } || fail_with_log "$log"
  find build/coverage -name '*.gcda' -delete
  log=$logs/coverage-ctest.log
  say "running the tests"
  ctest --test-dir build/coverage -R "$covering_tests" --timeout 600 --output-on-failure </dev/null >"$log" 2>&1 ||
    fail_with_log "$log"
  # Branches that only exceptions take, and those of lines without code, are the compiler's.
  log=$logs/coverage.log
  gcovr --root . --object-directory build/coverage --filter src/ --filter mmgr/ --filter include/ -j "$jobs" \
    --exclude-throw-branches --exclude-unreachable-branches --sort-uncovered --txt "$logs/coverage-lines.txt" \
    --html-details build/coverage/report.html --print-summary --fail-under-line "$least_lines" \
    --fail-under-branch "$least_branches" >"$log" 2>&1 || fail_with_log "$log"
  grep -E '^(lines|branches):' "$log"
  say "line by line: $root/build/coverage/report.html"
}
