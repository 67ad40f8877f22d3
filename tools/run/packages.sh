# What must be installed for what, and its installation on Debian.
# SPDX-License-Identifier: MIT

# group | program or file whose presence tells | Debian package
package_table='
build|cmake|cmake
build|ninja|ninja-build
build|g++|g++
build|/usr/include/SDL2/SDL.h|libsdl2-dev
demo|/usr/include/stb/stb_image.h|libstb-dev
tests|/usr/src/googletest/CMakeLists.txt|googletest
tests|gdb|gdb
tests|xvfb-run|xvfb
tests|xauth|xauth
clang|clang++|clang
win32|i686-w64-mingw32-g++|g++-mingw-w64-i686
win32|Xvfb|xvfb
win32|xauth|xauth
wine-root|debootstrap|debootstrap
docs|doxygen|doxygen
docs|python3|python3
package|dpkg-shlibdeps|dpkg-dev
package|file|file
package|pkg-config|pkg-config
package|lld-link|lld
bench|/usr/include/benchmark/benchmark.h|libbenchmark-dev
bench|/usr/include/zlib.h|zlib1g-dev
bench|/usr/include/libdeflate.h|libdeflate-dev
bench|/usr/include/gif_lib.h|libgif-dev
bench|tiffio.h|libtiff-dev
bench|archive.h|libarchive-dev
bench|/usr/include/libyuv/planar_functions.h|libyuv-dev
bench|/usr/include/pixman-1/pixman.h|libpixman-1-dev
bench|/usr/include/allegro.h|liballegro4-dev
bench|pkg-config|pkg-config
counts|valgrind|valgrind
coverage|gcovr|gcovr
lint|clang-format|clang-format
lint|clang-tidy|clang-tidy
lint|cppcheck|cppcheck
lint|git|git
'

# present NAME: a program on the path, a file, or a header of the machine's own architecture
present() {
  case $1 in
    /*) [ -e "$1" ] ;;
    *.h) [ -e "/usr/include/$1" ] || [ -e "/usr/include/$(uname -m)-linux-gnu/$1" ] ;;
    *) command -v "$1" >/dev/null ;;
  esac
}

# missing_packages GROUP...: prints the Debian packages of the groups that are not there
missing_packages() {
  local group name package
  while IFS='|' read -r group name package; do
    [ -n "$group" ] && [[ " $* " == *" $group "* ]] && ! present "$name" && echo "$package"
  done <<<"$package_table"
}

# as_root COMMAND...: runs it with root rights, fails where there are none
as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  elif [ -t 0 ]; then
    sudo -- "$@"
  else
    sudo -n -- "$@" </dev/null
  fi
}

can_be_root() {
  [ "$(id -u)" = 0 ] || { command -v sudo >/dev/null && { [ -t 0 ] || sudo -n true 2>/dev/null; }; }
}

# install_packages PACKAGE...: true when they are installed; what went wrong is in $package_log
install_packages() {
  package_log=$(mktemp "${TMPDIR:-/tmp}/kxgraphic-packages.XXXXXX")
  local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -y -o DPkg::Lock::Timeout=300 -o Acquire::Retries=3)
  if [ -z "${package_lists_fresh:-}" ]; then
    # An update may fail for one foreign source and still serve: the installation decides.
    as_root "${apt[@]}" update >>"$package_log" 2>&1
    package_lists_fresh=1
  fi
  as_root "${apt[@]}" install --no-install-recommends "$@" >>"$package_log" 2>&1 </dev/null || return 1
  rm -f "$package_log"
}

# need_packages GROUP...: everything of these groups is there afterwards, or ./run ends with code 69
need_packages() {
  local packages
  mapfile -t packages < <(missing_packages "$@")
  if [ ${#packages[@]} -gt 0 ]; then
    local by_hand="apt-get update && apt-get install -y --no-install-recommends ${packages[*]}"
    if ! command -v apt-get >/dev/null; then
      die 69 "this is no Debian machine; please install what these Debian packages hold: ${packages[*]}"
    elif [ -n "${KX_NO_INSTALL:-}" ] || ! can_be_root; then
      die 69 "packages are missing and may not be installed from here. As root:"$'\n'"  $by_hand"
    fi
    say "installing ${packages[*]}"
    if ! install_packages "${packages[@]}"; then
      tail -n 15 "$package_log" >&2
      die 69 "the packages could not be installed (log: $package_log). By hand, as root:"$'\n'"  $by_hand"
    fi
  fi
  local version
  version=$(cmake --version | sed -n '1s/[^0-9]*//p')
  [ "$(printf '%s\n' 3.25 "$version" | sort -V | head -n 1)" = 3.25 ] ||
    die 69 "CMake 3.25 or newer is needed, this is $version"
}
