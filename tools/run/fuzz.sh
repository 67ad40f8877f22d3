# ./run fuzz: a fuzz target, or all of them in turn, for a time; one line tells how far it is.
# SPDX-License-Identifier: MIT

fuzz_targets() {
  local file
  for file in tests/fuzz/corpus/*/; do basename "$file"; done
}

# fuzzed TARGET SECONDS: new inputs go to build/fuzz/corpus, what breaks the library to build/fuzz/found
fuzzed() {
  local target=$1 seconds=$2 output=$logs/fuzz-$1.log begin=$SECONDS fixed=() status
  mkdir -p "build/fuzz/corpus/$target" build/fuzz/found
  # Some kernels place programs where the sanitizer wants its shadow memory.
  setarch -R true 2>/dev/null && fixed=(setarch -R)
  "${fixed[@]}" "build/fuzz/kx_fuzz_$target" -max_total_time="$seconds" -max_len=4096 -timeout=60 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/found/$target-" "build/fuzz/corpus/$target" "tests/fuzz/corpus/$target" \
    >"$output" 2>&1 </dev/null &
  local job=$!
  children+=("$job")
  while kill -0 "$job" 2>/dev/null; do
    if [ -t 1 ]; then
      printf '\r-- %s: %d of %d s, %s   ' "$target" $((SECONDS - begin)) "$seconds" \
        "$(grep -aoE '^#[0-9]+.*cov: [0-9]+|corp: [^ ]+' "$output" | tail -n 2 | tr '\n' ' ' | cut -c 1-60)"
    fi
    sleep 1
  done
  wait "$job"
  status=$?
  [ ! -t 1 ] || printf '\r'
  say "$target: $(sed -nE 's/^stat::number_of_executed_units: +//p' "$output") inputs in $((SECONDS - begin)) s," \
    "$([ "$status" = 0 ] && echo nothing found || echo "FOUND SOMETHING, see $output")"
  [ "$status" = 0 ] || grep -aE 'ERROR|runtime error|broken:|Test unit written' "$output" | head -n 8
  return "$status"
}

run_fuzz() {
  local targets seconds=60 status=0 target
  mapfile -t targets < <(fuzz_targets)
  if [[ ${1:-} =~ ^[a-z] ]]; then
    printf '%s\n' "${targets[@]}" | grep -qx -- "$1" || die 2 "no fuzz target $1; there are: ${targets[*]}"
    targets=("$1")
    shift
  fi
  if [ $# -gt 0 ]; then
    [[ $1 =~ ^[1-9][0-9]*$ ]] && [ $# = 1 ] || die 2 "fuzz takes a target and a number of seconds, not $*"
    seconds=$1
  fi
  need_packages build tests clang
  lock_build
  { configure fuzz && build fuzz "${targets[@]/#/kx_fuzz_}"; } || fail_with_log "$log"
  for target in "${targets[@]}"; do fuzzed "$target" "$seconds" || status=1; done
  return "$status"
}
