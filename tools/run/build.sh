# Configuring and building a preset so that an interrupted run does no harm.
# SPDX-License-Identifier: MIT

# What a configured build folder depends on beside the CMake files: kept in <folder>/.configured once configuring is done.
configuration_key() {
  local compiler
  echo "$root"
  cmake --version | head -n 1
  for compiler in g++ clang++ i686-w64-mingw32-g++; do
    echo "$compiler: $("$compiler" --version 2>/dev/null | head -n 1)"
  done
  echo "$*"
}

on_if() { if "$@"; then echo ON; else echo OFF; fi; }

# configure PRESET
configure() {
  local preset=$1 folder=build/$1 options key
  log=$logs/$preset-configure.log
  options=("-DKX_TESTS=$(on_if [ -z "$(missing_packages tests)" ])"
           "-DKX_EXAMPLES=$(on_if [ -z "$(missing_packages demo)" ])")
  [[ $preset =~ ^(release|lint)$ ]] && options+=("-DKX_BENCH=$(on_if [ -z "$(missing_packages bench)" ])")
  command -v ccache >/dev/null &&
    options+=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  # kxcount needs valgrind's header, which may come later.
  key=$(configuration_key "${options[@]}" "$(missing_packages counts)")
  # Ninja looks after changed CMake files itself.
  [ -f "$folder/build.ninja" ] && [ "$key" = "$(cat "$folder/.configured" 2>/dev/null)" ] && return 0
  say "configuring $preset"
  # Half a configuration, another compiler, a moved folder: CMake's own files are thrown away, objects stay.
  rm -f "$folder/.configured"
  cmake --fresh --preset "$preset" "${options[@]}" >"$log" 2>&1 || return 1
  echo "$key" >"$folder/.configured"
}

# build PRESET [TARGET...]: goes on after an error, so that one run tells them all
build() {
  local preset=$1
  shift
  log=$logs/$preset-build.log
  if [ ! -t 1 ]; then
    say "building $preset"
    cmake --build "build/$preset" -j "$jobs" ${1:+--target "$@"} -- -k 0 >"$log" 2>&1
    return
  fi
  # Ninja counts its steps at the beginning of its lines.
  cmake --build "build/$preset" -j "$jobs" ${1:+--target "$@"} -- -k 0 2>&1 | tee "$log" |
    awk -v title="-- building $preset" 'BEGIN { printf "%s", title; fflush() }
      match($0, /^\[[0-9]+\/[0-9]+\]/) { printf "\r%s %s", title, substr($0, 1, RLENGTH); fflush() }
      END { print "" }'
  return "${PIPESTATUS[0]}"
}
