# ./run info: what a report of a fault should say about library and machine.
# SPDX-License-Identifier: MIT

run_info() {
  local platform=release
  case ${1:-} in
    --windows) platform=win32 ;;
    '') ;;
    *) die 2 "info knows --windows only, not $1" ;;
  esac
  # The tracer, for the calls that fail, is built beside it.
  built_for kxinfo kxtrace
  if [ "$platform" = win32 ]; then
    [ -z "${DISPLAY:-}" ] || lend_display
  fi
  started kxinfo
}
