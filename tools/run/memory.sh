# ./run memory: the test programs under valgrind and with the memory sanitizer, which notice what was never set.
# SPDX-License-Identifier: MIT

# What takes valgrind minutes and ./run test does with the address sanitizer; and what valgrind cannot: it keeps no
# modes of the floating-point units.
not_under_valgrind='RunLength.PacksLikeThePlainRule:HostileArguments.Numbers*'
not_under_valgrind+=':Devices.RenderingSwitchesTheFloatingPointModes:ProcessorState.*'

# memory_checked TITLE FOLDER COMMAND...: the memory manager of the tests hands out blocks that nobody has written to. All
# other memory counts as set for the sanitizer, as the standard library writes to it unseen.
memory_checked() {
  local title=$1 folder=$2 begin=$SECONDS
  shift 2
  log=$logs/memory-${title//[^a-z_]/-}.log
  if ! (cd "$folder" && KX_MEMCHECK=1 MSAN_OPTIONS=poison_in_malloc=0:poison_in_free=0 "$@") >"$log" 2>&1 </dev/null; then
    say "$title: FOUND SOMETHING"
    grep -aE -A 12 '^==[0-9]+== ?[A-Z]|FAILED|broken:' "$log" | head -n 40
    say "the whole log is $log"
    return 1
  fi
  say "$title: nothing found, $((SECONDS - begin)) s"
}

run_memory() {
  local status=0 target targets
  local valgrind=(valgrind --quiet --error-exitcode=9 --leak-check=full --show-leak-kinds=definite,possible
                  --errors-for-leak-kinds=definite,possible)
  local tests=(--gtest_brief=1 "--gtest_filter=-$not_under_valgrind")
  [ $# = 0 ] || die 2 "memory takes no options, not $*"
  need_packages build tests counts clang
  lock_build
  { configure release && build release kx_tests kx_interface_tests; } || fail_with_log "$log"
  memory_checked "valgrind, kx_interface_tests" build/release "${valgrind[@]}" ./kx_interface_tests "${tests[@]}" || status=1
  memory_checked "valgrind, kx_tests" build/release "${valgrind[@]}" ./kx_tests "${tests[@]}" || status=1

  # The report of `calls` would be of the standard library's reading of files.
  mapfile -t targets < <(fuzz_targets | grep -vx calls)
  { configure msan && build msan kx_tests "${targets[@]/#/kx_fuzz_}"; } || fail_with_log "$log"
  memory_checked "memory sanitizer, kx_tests" build/msan ./kx_tests --gtest_brief=1 || status=1
  for target in "${targets[@]}"; do
    memory_checked "memory sanitizer, corpus of $target" . "build/msan/kx_fuzz_$target" "tests/fuzz/corpus/$target" || status=1
  done
  return "$status"
}
