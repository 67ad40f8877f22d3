# ./run package: what `cmake --install` and CPack make of the release and win32 folders.
# SPDX-License-Identifier: MIT

# make_packages: from built folders into build/packages
make_packages() {
  local preset
  rm -rf build/packages
  log=$logs/packages.log
  : >"$log"
  say "packing"
  for preset in release win32; do
    [ -f "build/$preset/CPackConfig.cmake" ] || continue
    (cd "build/$preset" && cpack && { [ "$preset" = win32 ] || cpack -G DEB; }) >>"$log" 2>&1 || return 1
  done
  rm -rf build/packages/_CPack_Packages
}

run_package() {
  local preset
  [ $# -eq 0 ] || die 2 "package takes no options"
  need_packages build demo win32 package
  lock_build
  for preset in release win32; do
    configure "$preset" && build "$preset" kx_shipped || fail_with_log "$log"
  done
  make_packages || fail_with_log "$log"
  printf '%s\n' "$root"/build/packages/*
}
