"""Reads the list of exports (include/kxgraphic/exports/*.inc) with the text above each line, and the families' texts.

Shared descriptions of arguments stand as @param lines in a family's header or at the top of its list; a function's own
@param goes before them.
SPDX-License-Identifier: MIT
"""

import re
from dataclasses import dataclass, field
from pathlib import Path

ENTRY = re.compile(r"^KX_(METHOD|PLACEHOLDER|UNDESIGNED|FUNCTION)\((\w+), (\w+), \((.*)\)\)$")
TABLE = re.compile(r"^KX_TABLE\((\w+), (\w+), (\[.*\])\)$")


@dataclass
class Text:
    """A comment: what comes before the first @ word, and the sections, each as one line."""

    body: list = field(default_factory=list)
    parameters: dict = field(default_factory=dict)
    result: str = ""
    notes: list = field(default_factory=list)


@dataclass
class Export:
    kind: str  # METHOD, PLACEHOLDER, UNDESIGNED, FUNCTION, TABLE
    name: str
    result: str
    arguments: list  # (declaration, name) each
    dimensions: str
    text: Text
    family: str = ""


def comment_lines(comment):
    """The lines of a comment without its frame; indentation after the star is kept but for one blank."""
    inner = re.sub(r"^/\*+ ?|\s*\*/$", "", comment.strip())
    lines = inner.split("\n")
    return [lines[0]] + [re.sub(r"^ ?", "", re.sub(r"^ *\*", "", line)).rstrip() for line in lines[1:]]


def parse_text(comment):
    text = Text()
    section = None
    for line in comment_lines(comment):
        found = re.match(r"\s*@(param|return|throws) ?(.*)", line)
        if found:
            section = [found[1], found[2]]
            text.notes.append(section)
        elif section and re.match(r"\s+\S", line):
            section[1] += " " + line.strip()
        else:
            section = None
            text.body.append(line)
    sections, text.notes = text.notes, []
    for kind, words in sections:
        if kind == "param":
            # One name or more, separated by commas, then the words.
            names, description = re.match(r"(\w+(?:, \w+)*) ?(.*)", words).groups()
            text.parameters.update(dict.fromkeys(names.split(", "), description))
        elif kind == "return":
            text.result = words
        else:
            text.notes.append((kind, words))
    return text


def parse_arguments(words):
    if words == "void":
        return []
    arguments = []
    for declaration in words.split(","):
        declaration = declaration.strip()
        arguments.append((declaration, re.search(r"(\w+)$", declaration)[1]))
    return arguments


def read_list(path):
    """The text at the top of a list, and its exports."""
    top, exports, comment = Text(), [], None
    source = path.read_text(encoding="utf-8")
    for token in re.finditer(r"/\*.*?\*/|^KX_[A-Z]+\([^\n]*\)$", source, re.S | re.M):
        words = token[0]
        if words.startswith("/**"):
            comment = words
        elif words.startswith("/*"):
            shared = parse_text(words)
            top.body += ([""] if top.body else []) + shared.body
            top.parameters.update(shared.parameters)
            top.result = shared.result or top.result
        else:
            entry, table = ENTRY.match(words), TABLE.match(words)
            text = parse_text(comment) if comment else Text()
            if entry:
                name = entry[2] if entry[1] == "FUNCTION" else "KX_" + entry[2]
                exports.append(Export(entry[1], name, entry[3], parse_arguments(entry[4]), "", text))
                comment = None
            elif table:
                exports.append(Export("TABLE", table[1], table[2], [], table[3], text))
                comment = None
    return top, exports


def read_errors(folder):
    """code -> (leaf name, English message)"""
    source = (folder / "errors.inc").read_text(encoding="utf-8")
    lines = re.findall(r'^KX_ERROR\((0x\w+), (\w+), \w+, ".*", "(.*)"\)', source, re.M)
    return {int(code, 16): (leaf, english) for code, leaf, english in lines}


def read_values(folder):
    """Functions whose result is no code."""
    return set(re.findall(r"^KX_VALUE\((\w+)\)", (folder / "values.inc").read_text(encoding="utf-8"), re.M))


def header_text(path):
    return parse_text(re.match(r"/\*.*?\*/", path.read_text(encoding="utf-8"), re.S)[0])


def included_lists(path):
    return re.findall(r'#include "exports/(?!declare_)(\w+)\.inc"', path.read_text(encoding="utf-8"))
