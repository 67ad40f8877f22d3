#!/bin/bash
# Installs or unpacks each package of build/packages into an empty folder, and builds and runs a small user's project
# (tests/packages/user) against it: tools/check_packages.sh [--no-wine]. Prints "N passed, N failed".
# SPDX-License-Identifier: MIT
cd "$(dirname "$0")/.." || exit 1
root=$PWD user=$PWD/tests/packages/user packages=$PWD/build/packages
work=$packages/check
passed=0 failed=0
rm -rf "$work"
mkdir -p "$work"

# step TEXT COMMAND...: the output is shown when the command fails
step() {
  local text=$1 begin=$SECONDS
  shift
  if "$@" >"$work/step.log" 2>&1; then
    passed=$((passed + 1))
    echo "ok ($((SECONDS - begin)) s): $text"
  else
    failed=$((failed + 1))
    echo "FAILED: $text"
    tail -n 40 "$work/step.log"
  fi
}

says_it_works() { [ "$("$@" | tr -d '\r')" = "kxgraphic works" ]; }

# cmake_user FOLDER OPTIONS...: configures and builds the user's project, with no way to find the sources
cmake_user() {
  local build=$work/$1-user
  shift
  cmake -G Ninja -S "$user" -B "$build" "$@" && cmake --build "$build"
}

with_find_package() {
  cmake_user "$1" -DCMAKE_PREFIX_PATH="$work/$1${2:-}" -DCMAKE_BUILD_TYPE=Debug && says_it_works "$work/$1-user/user"
}

# with_pkg_config FOLDER [PREFIX]: the libraries are found beside each other, wherever the folder lies
with_pkg_config() {
  local lib=$work/$1${2:-}/lib flags
  # shellcheck disable=SC2162 # backslashes stand before blanks
  read -a flags < <(PKG_CONFIG_PATH=$lib/pkgconfig pkg-config --cflags --libs kxgraphic-mmgr) || return 1
  cc -std=c11 "$user/main.c" "${flags[@]}" -Wl,-rpath,"$lib" -o "$work/$1-pkg-config" && says_it_works "$work/$1-pkg-config"
}

# holds FOLDER PREFIX PATH...: every public header as it is here, these files, and in none a path of this machine
holds() {
  local folder=$work/$1 prefix=$2 path
  shift 2
  diff -r include/kxgraphic "$folder/$prefix/include/kxgraphic" || return 1
  for path; do
    [ -e "$folder/$prefix/$path" ] || { echo "$folder lacks $prefix/$path"; return 1; }
  done
  ! grep -rlF "$root" "$folder" | grep .
}

# shows TEXT COMMAND...: the command succeeds and its output matches
shows() {
  local text=$1 output
  shift
  output=$("$@" | tr -d '\r') && grep -qE "$text" <<<"$output" && return
  echo "no \"$text\" in: $output"
  return 1
}

# As dpkg would put them into a root, and each by itself.
unpack_debs() {
  local name
  for name in "${debs[@]}"; do
    dpkg-deb --contents "$packages/${name}"_*.deb && dpkg-deb -x "$packages/${name}"_*.deb "$work/deb" &&
      dpkg-deb -x "$packages/${name}"_*.deb "$work/$name" || return 1
  done
}

# What a finished game needs is one package, what building one needs another, programs and tracer a third; no file is in two.
debs_are_split() {
  local name contact='^[a-z ]+ <[a-z]+@[a-z.]+>$'
  for name in "${debs[@]}"; do
    [[ $(dpkg-deb -f "$packages/${name}"_*.deb Maintainer) =~ $contact ]] || { echo "$name: Maintainer"; return 1; }
  done
  diff - <(cd "$work/libkxgraphic1" && find . ! -type d | sort) <<TEXT || return 1
./usr/lib/libkxgraphic.so.1
./usr/lib/libkxgraphic.so.$version
./usr/lib/libmmgr.so
./usr/share/doc/libkxgraphic1/changelog.gz
./usr/share/doc/libkxgraphic1/copyright
TEXT
  [ -L "$work/libkxgraphic-dev/usr/lib/libkxgraphic.so" ] && [ ! -e "$work/libkxgraphic-dev/usr/bin" ] || return 1
  for name in "${debs[@]}"; do (cd "$work/$name" && find . ! -type d); done | sort | uniq -d | { ! grep .; }
}

# The library may need no symbol newer than its package asks for, and nothing but the C and C++ runtimes.
deb_depends() {
  local library=$work/deb/usr/lib/libkxgraphic.so.1 depends newest
  depends=$(dpkg-deb -f "$packages"/libkxgraphic1_*.deb Depends)
  echo "Depends: $depends"
  objdump -p "$library" | awk '/NEEDED|SONAME/ { print $1, $2 }'
  objdump -p "$library" | awk '/NEEDED/ && $2 !~ /^(libmmgr|libstdc\+\+|libm|libgcc_s|libc|ld-linux)/ { exit 1 }' || return 1
  objdump -p "$library" | grep -q 'SONAME *libkxgraphic\.so\.1$' || return 1
  newest=$(objdump -T "$library" | grep -o 'GLIBC_[0-9.]*' | sort -uV | tail -n 1)
  [[ $depends =~ libc6\ \(\>=\ ([0-9.]+)\) ]] && dpkg --compare-versions "${newest#GLIBC_}" le "${BASH_REMATCH[1]}" &&
    [[ $(dpkg-deb -f "$packages"/libkxgraphic-dev_*.deb Depends) = "libkxgraphic1 (= $version)" ]] &&
    [[ $(dpkg-deb -f "$packages"/kxgraphic-tools_*.deb Depends) = *"libkxgraphic1 (= $version)"* ]]
}

# From the sources. Compiling them all once more would take minutes: reuse_object takes what build/release has.
with_sources() {
  cmake_user sources -DKXGRAPHIC_SOURCE="$root" -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_COMPILER_LAUNCHER="$root/tools/reuse_object" &&
    says_it_works "$work/sources-user/user"
}

# traces LIBRARY PROGRAM: on Linux
traces() {
  local folder
  folder=$(mktemp -d "$work/traced.XXXXXX")
  # By its name: LD_PRELOAD takes no blanks.
  env -C "$folder" LD_PRELOAD="${1##*/}" LD_LIBRARY_PATH="${1%/*}" "$2" && shows ' KX_fillRect\(bitmap .*\[32x16 format 6\].* = 0' cat "$folder/kxtrace.log"
}

unzip_windows() { (cd "$work" && cmake -E tar xf "$packages"/kxgraphic-*-win32.zip && mv kxgraphic-*-win32 win32); }

every_line_ends_in_crlf() { ! grep -nvP '\r$' "$@"; }

# runs_under_wine PROGRAM: beside the two DLLs of the archive
runs_under_wine() {
  cp "$work"/win32/bin/*.dll "$(dirname "$1")" && says_it_works tools/wine-run "$1"
}

# In place of the library, which keeps another name.
traces_windows() {
  local folder=$work/win32-traced
  mkdir -p "$folder" && cp "$work/win32-user/user.exe" "$work/win32/bin/mmgr.dll" "$folder" &&
    cp "$work/win32/bin/kxgraphic.dll" "$folder/kxgraphic_real.dll" && cp "$work/win32/bin/kxtrace.dll" "$folder/kxgraphic.dll" &&
    (cd "$folder" && "$root/tools/wine-run" user.exe) && shows ' KX_fillRect\(bitmap .*\[32x16 format 6\].* = 0' cat "$folder/kxtrace.log"
}

with_pkg_config_windows() {
  local flags program=$work/win32-pkg-config/user.exe
  mkdir -p "$work/win32-pkg-config"
  # shellcheck disable=SC2162
  read -a flags < <(PKG_CONFIG_LIBDIR=$work/win32/lib/pkgconfig pkg-config --cflags --libs kxgraphic-mmgr) || return 1
  i686-w64-mingw32-gcc -std=c11 "$user/main.c" "${flags[@]}" -o "$program" && { [ -n "$no_wine" ] || runs_under_wine "$program"; }
}

with_find_package_windows() {
  cmake_user win32 -DCMAKE_TOOLCHAIN_FILE="$root/cmake/win32-toolchain.cmake" -Dkxgraphic_DIR="$work/win32/lib/cmake/kxgraphic" &&
    { [ -n "$no_wine" ] || runs_under_wine "$work/win32-user/user.exe"; }
}

# As another compiler's tools would: LLVM's LINK makes import libraries of the .def files.
with_def_files() {
  local name folder=$work/win32-def
  mkdir -p "$folder"
  for name in kxgraphic mmgr; do
    lld-link /dll /noentry /machine:x86 /safeseh:no /force "/def:$work/win32/lib/$name.def" "/implib:$folder/$name.lib" \
      "/out:$folder/unused.dll" || return 1
  done
  i686-w64-mingw32-gcc -std=c11 -I"$work/win32/include" "$user/main.c" "$folder"/{kxgraphic,mmgr}.lib -o "$folder/user.exe" &&
    { [ -n "$no_wine" ] || runs_under_wine "$folder/user.exe"; }
}

no_wine=
[ "${1:-}" != --no-wine ] || no_wine=1
version=$(sed -nE 's/^project\(.* VERSION ([0-9.]+) .*/\1/p' CMakeLists.txt)
debs=(libkxgraphic1 libkxgraphic-dev kxgraphic-tools)
# What every package of everything holds beside the headers.
common=(lib/cmake/kxgraphic/kxgraphicConfig{,Version}.cmake lib/pkgconfig/kxgraphic{,-mmgr}.pc
  share/kxgraphic/{kxgraphic.json,kxgraphic.py,example.py,kxgraphic-gdb.py})
linux=(lib/libkxgraphic.so{,.1,".$version"} lib/libmmgr.so lib/libkxtrace.so bin/{kxdemo,lagoon,kxinfo} "${common[@]}")
windows=(bin/{kxgraphic,mmgr,kxtrace}.dll bin/{kxdemo,lagoon,kxinfo}.exe lib/lib{kxgraphic,mmgr}.dll.a lib/{kxgraphic,mmgr}.def
  "${common[@]}")
texts=(README.txt LICENSE CHANGELOG.md)
well="All is drawn as it should be"
night="night.png: 320 x 200 pixels, CRC F3DE3DCC, kxgraphic $version"

step "cmake --install into an empty folder" cmake --install build/release --prefix "$work/installed"
step "what it installs" holds installed . "${linux[@]}"
step "find_package from there" with_find_package installed
step "pkg-config from there" with_pkg_config installed
if compgen -G "$packages/kxgraphic-*-linux-*.tar.gz" >/dev/null; then
  step ".tar.gz unpacks" bash -c "mkdir '$work/tar' && tar xzf '$packages'/kxgraphic-*.tar.gz -C '$work/tar' --strip-components=1"
  step ".tar.gz holds" holds tar . "${linux[@]}" "${texts[@]}"
  step ".tar.gz: its demo draws" "$work/tar/bin/kxdemo" --sheet "$work/sheet"
  step ".tar.gz: its game plays" "$work/tar/bin/lagoon" --frames 60
  step ".tar.gz: kxinfo finds all well" shows "$well" "$work/tar/bin/kxinfo" --no-modes
  step ".tar.gz: find_package" with_find_package tar
  step ".tar.gz: pkg-config" with_pkg_config tar
  step ".tar.gz: kxtrace" traces "$work/tar/lib/libkxtrace.so" "$work/tar-pkg-config"
  ! command -v python3 >/dev/null ||
    step ".tar.gz: Python" shows "$night" env -C "$work" python3 -B "$work/tar/share/kxgraphic/example.py"
fi
if compgen -G "$packages/libkxgraphic1_*.deb" >/dev/null; then
  step ".deb unpack" unpack_debs
  step ".deb hold" holds deb usr "${linux[@]}" share/doc/{libkxgraphic1,libkxgraphic-dev,kxgraphic-tools}/copyright
  step ".deb: library, development, tools" debs_are_split
  step ".deb: dependencies cover what the library needs" deb_depends
  step ".deb: find_package" with_find_package deb /usr
  step ".deb: pkg-config" with_pkg_config deb /usr
  step ".deb: kxinfo finds all well" shows "$well" "$work/deb/usr/bin/kxinfo" --no-modes
fi
step "add_subdirectory of the sources" with_sources
if compgen -G "$packages/kxgraphic-*-win32.zip" >/dev/null; then
  step ".zip unpacks" unzip_windows
  step ".zip holds" holds win32 . "${windows[@]}" "${texts[@]}"
  step ".zip: old editors show its texts" every_line_ends_in_crlf "${texts[@]/#/$work/win32/}"
  if [ -z "$no_wine" ]; then
    step ".zip: its demo draws" tools/wine-run "$work/win32/bin/kxdemo.exe" --sheet "$work/sheet-windows"
    step ".zip: its game plays" tools/wine-run "$work/win32/bin/lagoon.exe" --frames 60
    step ".zip: kxinfo finds all well" shows "$well" tools/wine-run "$work/win32/bin/kxinfo.exe" --no-modes
    for name in kxgraphic mmgr; do
      step ".zip: $name.dll tells its version" shows "^$name +$version, " tools/wine-run "$work/win32/bin/kxinfo.exe" --no-modes
    done
  fi
  step ".zip: find_package with mingw-w64" with_find_package_windows
  step ".zip: pkg-config with mingw-w64" with_pkg_config_windows
  [ -n "$no_wine" ] || step ".zip: kxtrace" traces_windows
  ! command -v lld-link >/dev/null || step ".zip: import libraries of the .def files" with_def_files
fi
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
