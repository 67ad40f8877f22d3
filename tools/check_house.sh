#!/bin/bash
# The rules of the house that a script can check. Prints each breach as file:line, then "N passed, N failed", where N
# counts rules.
# SPDX-License-Identifier: MIT
cd "$(dirname "$0")/.." || exit 1
layers="platform frame codec pixel bitmap blit draw screen render3d landscape interface"
longest=500
passed=0 failed=0

code_files() { find include src mmgr tests bench examples tools run cmake -type f ! -name '*.png' ! -name '*.jpg' "$@"; }

# rule TEXT COMMAND...: the command prints the breaches
rule() {
  local text=$1 breaches
  shift
  breaches=$("$@")
  if [ -z "$breaches" ]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'breach: %s\n%s\n' "$text" "$breaches"
  fi
}

long_files() {
  code_files \( -name '*.cpp' -o -name '*.c' -o -name '*.h' -o -name '*.hpp' -o -name '*.sh' \) -print0 |
    xargs -0 wc -l | awk -v longest="$longest" '$2 != "total" && $1 > longest { print "  " $2 ": " $1 " lines" }'
}

layer_breaches() {
  find src -name '*.cpp' -o -name '*.h' | sort | xargs awk -v layers="$layers" '
    BEGIN { count = split(layers, name, " "); for (i = 1; i <= count; i++) order[name[i]] = i }
    match($0, /^#include "[a-z0-9]+\//) {
      split(FILENAME, path, "/")
      layer = substr($0, 11, RLENGTH - 11)
      if (!(path[2] in order)) print "  " FILENAME ": no layer called " path[2]
      else if (layer in order && order[layer] > order[path[2]]) print "  " FILENAME ":" FNR ": " $0
    }'
}

# The system's headers and its conditions stay in src/platform.
system_code() {
  grep -rnE '^ *# *include <(windows|mm?system|ddraw|unistd|dlfcn|fcntl|pthread|sys/|X11/|SDL)|^ *# *(el)?if.*(_WIN32|__linux__|__unix__)' \
    src --include='*.cpp' --include='*.h' | grep -v '^src/platform/' | sed 's/^/  /'
}

# Instructions beyond SSE2, which every processor here has, stand in the files whose suffix chooses their flags, or in
# headers that only such files include.
vector_code() {
  local beyond='<(imm|x86|smm|tmm|nmm|wmm|pmm)intrin\.h>' header
  while read -r header; do
    beyond="$beyond|\"${header#src/}\""
  done < <(grep -rlE "^ *# *include $beyond" src --include='*.h')
  grep -rlE "^ *# *include ($beyond)" src --include='*.cpp' |
    grep -vE '_(sse2|avx2|avx512|pclmul)\.cpp$|/cpu\.cpp$' | sed 's/^/  /'
}

heads() {
  code_files \( -name '*.cpp' -o -name '*.c' -o -name '*.h' -o -name '*.hpp' -o -name '*.sh' \) -print0 |
    xargs -0 awk 'FNR == 1 { if (file && !seen) print "  " file; file = FILENAME; seen = 0 }
      FNR <= 60 && /SPDX-License-Identifier: MIT/ { seen = 1 }
      END { if (file && !seen) print "  " file }'
}

# The project stands on no machine and asks no host: no absolute paths but those of every system, no addresses.
places() {
  find . \( -path ./build -o -path ./.git \) -prune -o -type f -print0 |
    xargs -0 grep -nIP '(?<![\w.$%*)}/-])(?<!\w")/(?!(usr|etc|dev|proc|sys|tmp|bin|var)/)[\w.-]+/\w|\b[A-Z]:[\\/]+Users|[a-z]://\w' |
    sed 's/^/  /'
}

# Sources have folders; one beside README.md is somebody's scratch.
scratch() { find . -maxdepth 1 \( -name '*.c' -o -name '*.cpp' -o -name '*.h' -o -name '*.py' \) | sed 's/^/  /'; }

# Entry points keep their full names: grep must find each where it is defined. Placeholders come from the list.
definitions() {
  [ ! -e src/interface/pending.cpp ] || return
  sed -nE 's/^KX_METHOD\(([A-Za-z0-9_]+),.*/KX_\1/p; s/^KX_FUNCTION\(([A-Za-z0-9_]+),.*/\1/p' \
    include/kxgraphic/exports/*.inc | while read -r name; do
    grep -rqE "\b$name\(" src --include='*.cpp' || echo "  $name"
  done
}

rule "no file is longer than $longest lines" long_files
rule "a folder includes only from its left: $layers" layer_breaches
rule "operating-system code stays in src/platform" system_code
rule "vector code stays in files named after its instruction set" vector_code
rule "every file says its licence in its head" heads
rule "no path of one machine, no address of a host" places
rule "no sources beside README.md" scratch
rule "every exported function is found by its full name in src" definitions
echo "$passed passed, $failed failed"
[ "$failed" = 0 ]
