# ./run interface: renews the descriptions of the interface that builds are held to.
# SPDX-License-Identifier: MIT

# described PRESET SNAPSHOT COMMAND...: the command runs that preset's programs
described() {
  local preset=$1 snapshot=$root/tests/interface/snapshot/$2
  shift 2
  configure "$preset" && build "$preset" kxinterface || fail_with_log "$log"
  "$@" json "$root/bindings/kxgraphic.json" && "$@" snapshot "$snapshot" || die 1 "kxinterface failed"
  say "written: $snapshot"
}

renew_interface() {
  [ $# = 0 ] || die 2 "interface takes no arguments"
  need_packages build win32
  lock_build
  described release linux-x86-64.txt build/release/kxinterface
  prepare_wine || die 69 "no Wine: the snapshot of Windows is as it was"
  described win32 win32.txt tools/wine-run build/win32/kxinterface.exe
  say "compare with git diff; what may change when: docs/versioning.md"
}
