# Getting a Wine that runs 32-bit programs. tools/wine-run is what uses it.
# SPDX-License-Identifier: MIT
wine_root=$cache/wine32-root

# mirror_of_apt: prints "suite URL" of the Debian archive that apt itself is set up with.
mirror_of_apt() {
  local codename release component uri own
  own=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
  while IFS='|' read -r release codename component uri; do
    [ "$component" = main ] && { [ "$release" = "$own" ] || [ "$codename" = "$own" ]; } || continue
    # A list of mirrors in a file: any of them will do.
    case $uri in mirror+file:*)
      uri=${uri#mirror+file:}
      uri=$(grep -m 1 -o '^[^#[:space:]]*://[^[:space:]]*' "${uri%/}")
      ;;
    esac
    echo "$own $uri"
    return 0
  done < <(apt-get indextargets --format '$(RELEASE)|$(CODENAME)|$(COMPONENT)|$(REPO_URI)' 'Created-By: Packages')
  return 1
}

# An i386 root with Wine in it, made under another name and renamed when complete. Everything is mounted in a namespace
# of its own, so that no mount outlives this.
make_wine_root() {
  local part=$wine_root.part suite mirror proxy=
  as_root unshare --mount true 2>/dev/null || { echo "mounting is not permitted here"; return 1; }
  present debootstrap || install_packages debootstrap || { tail -n 5 "$package_log"; return 1; }
  read -r suite mirror < <(mirror_of_apt) || { echo "apt is set up with no Debian archive"; return 1; }
  eval "$(apt-config shell proxy Acquire::http::Proxy)"
  [ ! -e "$part" ] || as_root rm -rf --one-file-system "$part"
  as_root unshare --mount --propagation private env PATH="$PATH:/usr/sbin:/sbin" ${proxy:+http_proxy="$proxy"} \
    debootstrap --arch=i386 --variant=minbase --include=wine,wine32 "$suite" "$part" "$mirror" || return 1
  as_root find "$part/var/cache/apt" "$part/var/lib/apt/lists" -type f -delete
  as_root mv "$part" "$wine_root"
}

# Where no root can be made: the i386 packages beside the machine's own.
install_wine_beside() {
  local added=
  if ! dpkg --print-foreign-architectures | grep -qx i386; then
    as_root dpkg --add-architecture i386 || return 1
    added=1
    package_lists_fresh=
  fi
  install_packages wine wine32:i386 && return 0
  tail -n 5 "$package_log"
  [ -z "$added" ] || as_root dpkg --remove-architecture i386
  return 1
}

# Does a 32-bit program run and hand its exit code on? A Wine that has lost its way gets a new prefix.
wine_works() {
  local program=$root/build/wine-check.exe
  echo 'int main(void) { return 7; }' | i686-w64-mingw32-gcc -x c - -o "$program" || return 1
  tools/wine-run "$program"
  [ $? = 7 ] && return 0
  rm -rf build/wine
  tools/wine-run "$program"
  [ $? = 7 ]
}

# prepare_wine: true when 32-bit programs can be run afterwards; says why not otherwise
prepare_wine() {
  mkdir -p "$cache" || return 1
  exec 8>"$cache/.lock"
  flock 8
  if [ ! -d "$wine_root" ] && command -v wine >/dev/null; then
    wine_works && return 0
    echo "the installed wine runs no 32-bit programs"
  fi
  if [ ! -d "$wine_root" ]; then
    if [ -n "${KX_NO_INSTALL:-}" ] || ! can_be_root; then
      echo "Wine for i386 is not there and takes root rights to get"
      return 1
    fi
    make_wine_root || install_wine_beside || return 1
  fi
  wine_works || { echo "Wine does not run (is $wine_root whole? It can be deleted.)"; return 1; }
}
