#!/usr/bin/env python3
"""Looks whether every export has a page: check_pages.py FOLDER, which holds kxgraphic.tag and html/.

SPDX-License-Identifier: MIT
"""

import re
import sys
import xml.etree.ElementTree as tree
from pathlib import Path

from lists import read_list

LISTS = Path(__file__).resolve().parents[2] / "include/kxgraphic/exports"


def main():
    folder = Path(sys.argv[1])
    pages = {}
    for member in tree.parse(folder / "kxgraphic.tag").iter("member"):
        pages.setdefault(member.findtext("name"), member.findtext("anchorfile"))
    exports = [export for path in sorted(LISTS.glob("*.inc")) for export in read_list(path)[1]]
    reserved = (folder / "html/group__reserved.html").read_text(encoding="utf-8")
    missing = []
    for export in exports:
        if export.kind == "UNDESIGNED":
            found = re.search(rf"\b{export.name}\b", reserved)
        else:
            found = pages.get(export.name) and (folder / "html" / pages[export.name]).exists()
        if not found:
            missing.append(export.name)
    print(f"{len(exports) - len(missing)} exports have their page")
    for name in missing:
        print(f"no page of {name}")
    return bool(missing)


if __name__ == "__main__":
    sys.exit(main())
