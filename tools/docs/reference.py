#!/usr/bin/env python3
"""Writes headers for Doxygen in which every export is a declaration with a whole description of its own.

The public headers make declarations of the list of exports by macros, which Doxygen cannot follow.
Beside them it puts the guides of docs/.
usage: reference.py OUTPUT-FOLDER   Ends with 1 and a line for each gap when an export lacks a text, an argument or a result.
SPDX-License-Identifier: MIT
"""

import re
import shutil
import sys
from pathlib import Path

from lists import comment_lines, header_text, included_lists, read_errors, read_list, read_values

ROOT = Path(__file__).resolve().parents[2]
HEADERS = ROOT / "include/kxgraphic"
LISTS = HEADERS / "exports"

# Header: title of the family, and the titles of its lists. Lists of one title form one group.
FAMILIES = {
    "frame": ("Method tables, drivers, faults", {"common_methods": None, "interfaces": None}),
    "bitmap": ("Bitmaps", {"bitmap_object": "Making and locking bitmaps", "bitmap_functions": "Making and locking bitmaps",
                           "clipping": "Clipping", "colours": "Colours and palettes"}),
    "blit": ("Blits", {"copy_blits": "Copy blits", "stretch_blits": "Stretch blits", "data": "Tables of the constant alpha"}),
    "draw": ("Drawing", {"points": "Points", "lines": "Lines", "fills": "Fills", "image_methods": "Image operations",
                         "image_functions": "Image operations"}),
    "screen": ("Screen", {"screen_object": None}),
    "render3d": ("3D", {"device_object": "Devices and textures", "triangles": "Triangles", "cameras": "Cameras"}),
    "landscape": ("Landscapes", {"landscape": "The landscape and its saved block", "height_map": "Height maps",
                                 "water": "Water"}),
    "codec": ("Coders", {"codec": None}),
}
RESERVED = ("reserved", "Reserved names", "undesigned_methods")
# Read by Doxygen as they are.
PLAIN_HEADERS = ["mmgr.h", "error_text.h", "picture.h", "kxgraphic.hpp", "exceptions.hpp"]
# What a code says when a result does not say it itself.
REMARKS = {2: "memory ran out", 7: "a pointer that cannot be used, or a value out of its range",
           4: "the method table is newer than 0x10000"}

gaps = []
# Names that have a page or a place on one.
known = set()


def escaped(words):
    """Plain words for Doxygen: no HTML by accident, and links from the names that have a page."""
    words = re.sub(r"(?<!`)([<>#])(?!`)", r"\\\1", words)
    return re.sub(r"(?<![\w#`/.])[A-Z]+_\w+\b(?!`)", lambda name: "#" * (name[0] in known) + name[0], words)


def paragraphs(lines):
    """Running text for Doxygen; indented lines keep their shape."""
    out, shaped, in_list = [], False, False
    for line in lines:
        indented = bool(re.match(r"\s{2,}\S", line))
        in_list = line.lstrip().startswith("- ") or (in_list and indented)
        if (indented and not in_list) != shaped and (line.strip() or shaped):
            shaped = not shaped
            out.append("@verbatim" if shaped else "@endverbatim")
        out.append(line if shaped else escaped(line))
    return out + (["@endverbatim"] if shaped else [])


def comment(lines):
    return "/**\n" + "\n".join(lines) + "\n*/\n"


def code_rows(segments, errors):
    for segment in segments:
        found = re.match(r"(0x[0-9A-Fa-f]+|\d+)(?: (.*)|$)", segment)
        code = int(found[1], 0) if found else None
        if code == 0:
            continue
        if code in errors:
            leaf, english = errors[code]
            yield f"`0x{code:04X}`", f"#KX_ERROR_{leaf}", found[2] or REMARKS.get(code, english)
        else:
            yield "", "", segment


def results(export, errors, values):
    """The section about the result; codes become a table in the order of the tests."""
    words = export.text.result
    # A sentence after the list of codes is a remark on it.
    codes, _, remark = words.partition(". ")
    segments = [segment.strip() for segment in codes.rstrip(".").split("; ")]
    has_codes = export.result == "uint32_t" and (export.name not in values or "7" in segments)
    if not has_codes:
        return ["@return " + escaped(words)]
    first = "0" if segments[0].split(" ")[0] == "0" and export.name not in values else segments[0]
    out = ["@return " + escaped(first if first != "0" else segments[0].replace("0", "0 for success", 1))]
    rows = list(code_rows(segments[1:], errors))
    if rows:
        out += ["@par Codes, in the order of the tests", "<table class=\"codes\">"]
        out += [f"<tr><td>{code}</td><td>{name}</td><td>{escaped(when)}</td></tr>" for code, name, when in rows]
        out += ["</table>"]
    return out + (["@par", escaped(remark)] if remark else [])


def summary(lines):
    """The first sentence goes on a line of its own, as @brief."""
    text = " ".join(line.strip() for line in lines).strip()
    found = re.match(r"(.*?\.)(?:\s+|$)(.*)", text, re.S)
    return (found[1], found[2]) if found else (text, "")


def function(export, shared, errors, values, group):
    """A declaration with all that is known of it. Notes what is missing."""
    text = export.text
    if export.kind == "PLACEHOLDER" and not any(text.body):
        text.body = ["Not supported by the library itself: a driver may supply it."]
        text.result = text.result or "6 at once"
    parts = []
    split = text.body.index("") if "" in text.body else len(text.body)
    brief, more = summary(text.body[:split])
    parts += ["@brief " + escaped(brief), ""]
    parts += [escaped(more), ""] if more else []
    parts += paragraphs(text.body[split + 1:])
    described = []
    for _, name in export.arguments:
        description = text.parameters.get(name) or shared.get(name) or ("not used" if export.kind == "PLACEHOLDER" else "")
        if not description:
            gaps.append(f"{export.name}: nothing is said of {name}")
        if described and described[-1][1] == description:
            described[-1][0].append(name)
        else:
            described.append(([name], description))
    parts += [f"@param {','.join(names)} {escaped(description)}" for names, description in described]
    for name in text.parameters:
        if name not in [own for _, own in export.arguments]:
            gaps.append(f"{export.name}: there is no argument {name}")
    if not brief:
        gaps.append(f"{export.name}: no text")
    if not text.result:
        gaps.append(f"{export.name}: nothing is said of the result")
    parts += results(export, errors, values)
    parts += [f"@{kind} {escaped(words)}" for kind, words in text.notes if kind == "throws"]
    parts += ["", f"What holds for the whole family: @ref {group}."]
    arguments = ", ".join(declaration for declaration, _ in export.arguments) or "void"
    return comment(parts) + f"{export.result} {export.name}({arguments});\n"


def table(export):
    if not any(export.text.body):
        export.text.body = ["See the table before it."]
    return comment(["@brief " + escaped(" ".join(export.text.body))]) + \
        f"extern {export.result} {export.name}{export.dimensions};\n"


def list_group(title, names, parent, errors, values):
    """A group of the functions of some lists; without a title they belong to the parent itself."""
    group = (names[0] if names[0] != parent else parent + "_object") if title else parent
    family_shared = header_text(HEADERS / f"{parent}.h").parameters
    head, members = [], []
    for name in names:
        top, exports = read_list(LISTS / f"{name}.inc")
        shared = {**family_shared, **top.parameters}
        head += [""] + paragraphs(top.body) if any(top.body) else []
        for export in exports:
            if not export.text.result:
                export.text.result = top.result
            if export.kind == "TABLE":
                members.append(table(export))
            else:
                members.append(function(export, shared, errors, values, group))
    if title:
        head = [f"@defgroup {group} {title}", f"@ingroup {parent}"] + head
    else:
        head = [f"@addtogroup {group}"] + head
    return comment(head) + "/** @{ */\n\n" + "\n".join(members) + "\n/** @} */\n"


def family(header, errors, values):
    title, lists = FAMILIES[header]
    intro = header_text(HEADERS / f"{header}.h").body
    intro = [line for line in intro if "SPDX" not in line and not re.match(r"kxgraphic: ", line)]
    source = (HEADERS / f"{header}.h").read_text(encoding="utf-8")
    # A second comment of prose, as in frame.h.
    for block in re.findall(r"^/\*(?!\*).*?\*/", source, re.S | re.M)[1:]:
        intro += [""] + comment_lines(block)
    out = [f"/// @file kxgraphic/{header}.h\n", comment([f"@defgroup {header} {title}", ""] + paragraphs(intro))]
    groups = {}
    for name in included_lists(HEADERS / f"{header}.h"):
        groups.setdefault(lists[name], []).append(name)
    for sub_title, names in groups.items():
        out.append(list_group(sub_title, names, header, errors, values))
    # Enumerations of the header itself.
    enums = re.findall(r"/\*\*(?:(?!\*/).)*\*/\nenum .*?\};\n", source, re.S)
    out += [f"/** @addtogroup {header}\n @{{ */\n", *enums, "/** @} */\n"] if enums else []
    return "\n".join(out)


def reserved(errors):
    group, title, name = RESERVED
    top, exports = read_list(LISTS / f"{name}.inc")
    lines = [f"@defgroup {group} {title}", ""] + paragraphs(top.body) + [""]
    lines += [f"- `KX_{export.name.removeprefix('KX_')}` returns #KX_ERROR_{errors[6][0]}" for export in exports]
    return comment(lines)


def error_codes(errors):
    lines = [comment(["@defgroup errors Result codes", "", "0 is success; any other value is the code of an exception class."
                      " Bits 12 to 15 name its group."]),
             "/** @{ */\n", "/** Result codes: KX_ERROR_leaf is the code of the class KX_leaf_Exception. */", "enum KxError {",
             "  KX_NO_ERROR = 0, /**< success */"]
    for code, (leaf, english) in errors.items():
        lines.append(f"  KX_ERROR_{leaf} = 0x{code:04X}, /**< {english} */")
    return "/// @file kxgraphic/errors.h\n" + "\n".join(lines) + "\n};\n/** @} */\n"


def types():
    """types.h with the slots of the method tables in place of the lists."""
    def slots(found):
        lines = []
        for name in re.findall(r'#include "(\w+)\.inc"', (LISTS / f"{found[1]}.inc").read_text(encoding="utf-8")):
            for export in read_list(LISTS / f"{name}.inc")[1]:
                slot = export.name.removeprefix("KX_")
                if export.kind == "UNDESIGNED":
                    lines.append(f"  KxUndesignedMethod {slot}; /**< reserved */")
                else:
                    arguments = ", ".join(declaration for declaration, _ in export.arguments) or "void"
                    lines.append(f"  {export.result} (*{slot})({arguments}); /**< {export.name} */")
        return "\n".join(lines)

    source = (HEADERS / "types.h").read_text(encoding="utf-8")
    source = re.sub(r"^/\*.*?\*/", "", source, count=1, flags=re.S)
    source = re.sub(r'#include "exports/(\w+)\.inc"', slots, source)
    # A description stands for every field of its line.
    source = re.sub(r"^  (\w+) (\w+(?:, \w+)+);( +/\*\*.*\*/)$", lambda field: "\n".join(
        f"  {field[1]} {name};{field[3]}" for name in field[2].split(", ")), source, flags=re.M)
    source = re.sub(r"^#.*\n", "", source, flags=re.M)
    source = re.sub(r'extern "C" \{|^\}\s*$', "", source, flags=re.M)
    source = re.sub(r"^typedef struct (\w+) \1;\n", "", source, flags=re.M)
    source = re.sub(r"^typedef void\(KX_CALL.*\n", "/** A slot without a public argument list. */\n"
                    "typedef void (*KxUndesignedMethod)(void);\n", source, flags=re.M)
    for name, what in [("BitmapMethods", "bitmap"), ("ScreenMethods", "screen"), ("DeviceMethods", "3D device")]:
        source = source.replace(f"struct {name} {{\n  uint32_t version;",
                                f"/** The {what} method table. */\nstruct {name} {{\n  uint32_t version; /**< 0x10000 */")
    intro = ["@defgroup types Records and method tables", "", "Offsets are those of the C ABI of the platform; on 32-bit Windows",
             "they never change."]
    return "/// @file kxgraphic/types.h\n" + comment(intro) + "/** @{ */\n" + source + "\n/** @} */\n"


def exception_classes(errors):
    """The classes that exceptions.hpp makes of the list of errors: a table, and the root."""
    groups = dict(re.findall(r"^KX_ERROR\(0x\w+, (\w+), (\w+),", (LISTS / "errors.inc").read_text(encoding="utf-8"), re.M))
    rows = [f"<tr><td>`0x{code:04X}`</td><td>`KX_{leaf}_Exception`</td><td>`KX_{groups[leaf]}Exception`</td><td>{english}</td></tr>"
            for code, (leaf, english) in errors.items()]
    source = (HEADERS / "exceptions.hpp").read_text(encoding="utf-8")
    root = re.search(r"^/// A fault\..*?^};\n", source, re.S | re.M)[0]
    return ["", "<table class=\"codes\"><tr><th>code</th><th>class</th><th>its group</th><th>fault</th></tr>", *rows, "</table>"], root


def plain(name, errors):
    """A header as it is, in a group of its own whose text is the header's first comment."""
    source = (HEADERS / name).read_text(encoding="utf-8")
    first = re.match(r"/\*.*?\*/\n|(?://.*\n)+", source, re.S if source.startswith("/*") else 0)[0]
    code = source.removeprefix(first)
    text = re.sub(r"SPDX-License-Identifier:\s*((?:\*|//)\s*)?MIT", "", first)
    lines = comment_lines(text) if text.startswith("/*") else [re.sub(r"^// ?", "", line) for line in text.splitlines()]
    lines[0] = lines[0].removeprefix("kxgraphic: ")
    head = paragraphs(lines)
    if name == "exceptions.hpp":
        rows, code = exception_classes(errors)
        head += rows
    group = "header_" + Path(name).name.replace(".hpp", "_hpp").removesuffix(".h")
    # What stands in a namespace is grouped inside it.
    again = f"/** @addtogroup {group}\n@{{ */\n"
    code = re.sub(r"^namespace kx \{\n", rf"/** @}} */\n\g<0>{again}", code, count=1, flags=re.M)
    code = re.sub(r"^\}  // namespace kx\n", rf"/** @}} */\n\g<0>{again}", code, count=1, flags=re.M)
    head = comment([f"@defgroup {group} {name}", "@ingroup helpers", f"`#include <kxgraphic/{name}>`: "] + head)
    return f"/// @file kxgraphic/{name}\n" + head + "/** @{ */\n" + code + "\n/** @} */\n"


def guides(output):
    """The guides with links to the functions they name, and names for their pages, which Doxygen would make of the folder."""
    output.mkdir(parents=True)
    for path in sorted((ROOT / "docs").glob("*.md")):
        text = re.sub(r"^(# .*)$", rf"\1 {{#guide_{path.stem}}}", path.read_text(encoding="utf-8"), count=1, flags=re.M)
        parts = re.split(r"(^```.*?^```$)", text, flags=re.S | re.M)
        parts[::2] = [re.sub(r"`(\w+)`", lambda name: f"[{name[1]}](@ref {name[1]})" if name[1] in known else name[0], part)
                      for part in parts[::2]]
        (output / path.name).write_text("".join(parts), encoding="utf-8")


def main():
    output = Path(sys.argv[1]) / "headers/kxgraphic"
    (output / "exports").mkdir(parents=True)
    # The headers that stay as they are include it.
    shutil.copy(LISTS / "errors.inc", output / "exports")
    errors, values = read_errors(LISTS), read_values(LISTS)
    known.update(export.name for path in LISTS.glob("*.inc") for export in read_list(path)[1] if export.kind != "UNDESIGNED")
    known.update(re.findall(r"^  (KX_[A-Z0-9_]+) =", "".join(path.read_text() for path in HEADERS.glob("*.h")), re.M))
    guides(Path(sys.argv[1]) / "guides")
    told = {RESERVED[2]}
    for header, (_, lists) in FAMILIES.items():
        (output / f"{header}.h").write_text(family(header, errors, values), encoding="utf-8")
        told.update(lists)
    (output / "helpers.h").write_text(comment(["@defgroup helpers Headers beside the library",
                                               "The memory manager, and code in headers alone: for C, and two for C++."]),
                                      encoding="utf-8")
    (output / "reserved.h").write_text(reserved(errors), encoding="utf-8")
    (output / "errors.h").write_text(error_codes(errors), encoding="utf-8")
    (output / "types.h").write_text(types(), encoding="utf-8")
    for name in PLAIN_HEADERS:
        if (HEADERS / name).exists():
            (output / name).write_text(plain(name, errors), encoding="utf-8")
    for path in sorted(LISTS.glob("*.inc")):
        if path.stem not in told and read_list(path)[1]:
            gaps.append(f"{path.name}: the list belongs to no family of {Path(__file__).name}")
    print("\n".join(gaps) or "every export is described", file=sys.stderr if gaps else sys.stdout)
    return bool(gaps)


if __name__ == "__main__":
    sys.exit(main())
