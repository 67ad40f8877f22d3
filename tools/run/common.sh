# Messages, clean-up and the lock: shared by the parts of ./run.
# SPDX-License-Identifier: MIT
jobs=$(nproc)
logs=$root/build/logs
# Without HOME the password file tells the folder.
cache=${XDG_CACHE_HOME:-${HOME:-~}/.cache}/kxgraphic

say() { printf '%s\n' "-- $*"; }

# die CODE TEXT...
die() {
  local code=$1
  shift
  printf '%s\n' "run: $*" >&2
  exit "$code"
}

# fail_with_log FILE: the end of a failed step's log, then exit.
fail_with_log() {
  tail -n 40 "$1" >&2
  die 1 "failed, the whole log is $1"
}

# Children to stop when ./run ends, however it ends.
children=()
stop_children() {
  local child
  for child in "${children[@]}"; do
    kill "$child" 2>/dev/null && wait "$child" 2>/dev/null
  done
}
trap stop_children EXIT
trap 'exit 130' INT
trap 'exit 143' TERM HUP

# Two runs must not build in the same folder. The lock goes with the process, also when it is killed. Programs that may
# outlive this script are started with 9>&-.
lock_build() {
  mkdir -p "$logs" || die 1 "cannot write to $root/build"
  exec 9>"$root/build/.lock"
  if ! flock --nonblock 9; then
    say "another ./run is at work here, waiting for it"
    flock 9
  fi
}
