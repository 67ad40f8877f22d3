# ./run lint: formatting, static analysis and the rules of the house.
# SPDX-License-Identifier: MIT

# changed_files: what differs from the main branch, committed or not
changed_files() {
  local base
  base=$(git merge-base HEAD origin/main 2>/dev/null || git merge-base HEAD main 2>/dev/null || echo HEAD)
  { git diff --name-only --diff-filter=d "$base"; git ls-files --others --exclude-standard; } | sort -u
}

run_lint() {
  local files sources compiled targets=() status=0
  case ${1:-} in --all | '') ;; *) die 2 "lint knows --all only, not $1" ;; esac
  need_packages build tests demo clang lint
  if [ "${1:-}" = --all ]; then
    files=$(git ls-files)
  else
    files=$(changed_files)
  fi
  lock_build
  configure lint || fail_with_log "$log"

  mapfile -t sources < <(grep -E '^(include|src|mmgr|tests|bench|examples|tools)/.*\.(c|cpp|h|hpp)$' <<<"$files")
  say "clang-format: ${#sources[@]} files"
  [ ${#sources[@]} = 0 ] || clang-format --dry-run -Werror "${sources[@]}" || status=1

  # Only what this platform compiles is known to the build.
  mapfile -t compiled < <(printf '%s\n' "${sources[@]}" | grep -E '\.(c|cpp)$' | while read -r file; do
    grep -qF "\"file\": \"$root/$file\"" build/lint/compile_commands.json && echo "$file"
  done)
  if [ ${#compiled[@]} -gt 0 ]; then
    say "clang-tidy: ${#compiled[@]} files, those that were clean and have not changed since left out"
    # To Ninja FILE^ is what FILE is compiled to; here that goes through clang-tidy first.
    [ "${1:-}" = --all ] || targets=("${compiled[@]/#/$root/}")
    build lint "${targets[@]/%/^}" || {
      grep -aE ': (error|warning): ' "$log" | sort -u
      status=1
    }
    say "cppcheck: ${#compiled[@]} files"
    mkdir -p build/lint/cppcheck
    cppcheck --quiet --error-exitcode=1 --enable=warning,performance,portability --inline-suppr -j "$jobs" \
      --cppcheck-build-dir=build/lint/cppcheck --suppressions-list=tools/run/cppcheck.txt --library=googletest --std=c++20 \
      -Iinclude -Isrc -Isrc/platform/posix -Itests -Itools "${compiled[@]}" || status=1
  fi
  say "the rules of the house"
  tools/check_house.sh || status=1
  if [ "$status" = 0 ]; then say "nothing found"; else die 1 "lint found something"; fi
}
