# ./run demo: the tour in a window where there is a display, else as a gallery of pictures.
# SPDX-License-Identifier: MIT

# wanted_window: a display, and somebody who looks at it
wanted_window() { [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -t 1 ] && [ -z "${CI:-}" ]; }

# started PROGRAM ARGUMENTS...: a program of the platform in $platform
started() {
  local program=$1
  shift
  if [ "$platform" = win32 ]; then
    tools/wine-run "build/win32/$program.exe" "$@" | tr -d '\r' | tr '\\' /
    return "${PIPESTATUS[0]}"
  fi
  "build/release/$program" "$@"
}

# Wine draws on the display that this shell has. Its root sees the project's folder, not the home with the key.
lend_display() {
  export KX_WINE_DISPLAY=$DISPLAY KX_WINE_XAUTHORITY=
  local key=${XAUTHORITY:-${HOME:-~}/.Xauthority}
  [ -r "$key" ] || return 0
  mkdir -p build/wine && install -m 600 "$key" build/wine/xauthority && KX_WINE_XAUTHORITY=$root/build/wine/xauthority
}

# built_for TARGET...: built for the platform in $platform, and with what runs it
built_for() {
  if [ "$platform" = win32 ]; then need_packages build demo win32; else need_packages build demo; fi
  lock_build
  configure "$platform" && build "$platform" "$@" || fail_with_log "$log"
  [ "$platform" = win32 ] || return 0
  say "getting Wine ready"
  # The lock of the build must not live on in Wine's server.
  prepare_wine >"$logs/wine.log" 2>&1 </dev/null 9>&- || fail_with_log "$logs/wine.log"
}

# in_window PROGRAM: true when it ran in a window, with its exit code in $status
in_window() {
  [ "$platform" = release ] || [ -z "${DISPLAY:-}" ] || lend_display
  started "$1"
  status=$?
  unset KX_WINE_DISPLAY
  [ "$status" != 7 ] || say "no window could be opened"
  [ "$status" != 7 ]
}

run_demo() {
  local platform=release folder=$root/build/demo picture= mode= status
  while [ $# -gt 0 ]; do
    case $1 in
      --windows) platform=win32 folder=$root/build/demo-windows ;;
      --window | --gallery) mode=${1#--} ;;
      -*) die 2 "demo knows --windows, --window and --gallery, not $1" ;;
      *)
        [ -z "$picture" ] || die 2 "demo takes one picture at most"
        picture=$1
        ;;
    esac
    shift
  done
  # The caller's folder counts, and a mistyped name should not cost a build.
  case $picture in '' | /*) ;; *) picture=$callers_folder/$picture ;; esac
  [ -z "$picture" ] || [ -r "$picture" ] || die 3 "cannot read the picture $picture"

  built_for kxdemo
  mkdir -p "$folder"
  if [ -n "$picture" ]; then
    say "drawing the sheet"
    # A copy, because Wine does not see every folder.
    if [ "$platform" = win32 ]; then
      cp -- "$picture" "$folder/" || die 3 "cannot copy the picture $picture"
      picture=$folder/${picture##*/}
    fi
    started kxdemo --sheet "$folder" "$picture"
    return
  fi
  if [ -z "$mode" ]; then wanted_window && mode=window; fi
  if [ "$mode" = window ]; then
    say "opening the window: arrows lead through the scenes, escape ends"
    in_window kxdemo && return "$status"
  fi
  say "drawing the gallery"
  started kxdemo --gallery "$folder"
}

run_game() {
  local platform=release folder=$root/build/demo status
  case ${1:-} in
    --windows) platform=win32 folder=$root/build/demo-windows ;;
    '') ;;
    *) die 2 "game knows --windows only, not $1" ;;
  esac
  built_for lagoon
  if wanted_window; then
    say "arrows steer, space throws a stone, F full screen, escape ends"
    in_window lagoon && return "$status"
  fi
  say "the game plays by itself: $folder/lagoon.png"
  mkdir -p "$folder"
  started lagoon --frames 900 --sheet "$folder/lagoon.png"
}
