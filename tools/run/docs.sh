# ./run docs: the reference, made from the public headers, and the guides of docs/ as HTML pages.
# SPDX-License-Identifier: MIT

# make_docs: fails on a gap in the descriptions, on what Doxygen warns of, and on an export without a page
make_docs() {
  log=$logs/docs.log
  rm -rf build/docs
  mkdir -p build/docs
  say "writing the pages"
  {
    python3 -B tools/docs/reference.py build/docs/input && doxygen tools/docs/Doxyfile &&
      python3 -B tools/docs/check_pages.py build/docs
  } >"$log" 2>&1
}

run_docs() {
  [ $# -eq 0 ] || die 2 "docs takes no options"
  need_packages docs
  lock_build
  make_docs || fail_with_log "$log"
  echo "$root/build/docs/html/index.html"
}
