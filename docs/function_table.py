#!/usr/bin/env python3
"""Writes the manual's page of all functions: one table for each header, a row for each operation, a column for each element
type. Every declaration of the headers is in it, so that a new family needs nothing but its header.
usage: function_table.py INCLUDE OUTPUT"""

import re
import sys
from collections import OrderedDict
from pathlib import Path

TYPES = ["1u", "8u", "8s", "8sc", "16u", "16s", "16sc", "24u", "24s", "32u", "32s", "32sc", "64u", "64s", "64sc",
         "32f", "32fc", "64f", "64fc"]
TYPE = re.compile(r"(?:8|16|24|32|64)(?:sc|fc|u|s|f)|1u")
# An operation, perhaps what it goes between ("CToC"), its types, and what distinguishes its forms ("I", "Sfs", "A24").
NAME = re.compile(rf"zep(?:s|sc|m|i)?(?P<operation>[A-Z]\w*?)(?:_(?P<types>(?:{TYPE.pattern})+)(?P<rest>(?:_\w+)?))?$")


def declared(text):
    """(name, result) of each exported function, in the order of the text."""
    code = re.sub(r"/\*.*?\*/", "", text, flags=re.S)
    for result, name in re.findall(r"ZEP_API\s+([^;(]*?)\s*\b(zep\w+)\s*\(", code):
        yield name, result


def title(text):
    """The first sentence of the header's own comment."""
    comment = re.search(r"/\*\* @file\n(.*?)\*/", text, re.S).group(1)
    words = " ".join(re.sub(r"^ \* ?", "", comment, flags=re.M).split())
    return re.split(r"(?<=[\w)])[.:] ", words + " ")[0].rstrip(". ")


def cell(functions):
    """Links to the functions of one operation and source type, by what distinguishes them."""
    return ", ".join(f'\\ref {name} "{label}"' for label, name in functions)


def table(names):
    rows, others = OrderedDict(), []
    for name in names:
        match = NAME.match(name)
        if match is None or match["types"] is None:
            others.append(name)
            continue
        types = TYPE.findall(match["types"])
        label = "".join(types[1:]) + match["rest"]
        rows.setdefault(match["operation"], {}).setdefault(types[0], []).append((label.lstrip("_") or "&bull;", name))
    lines = []
    if rows:
        used = [t for t in TYPES if any(t in row for row in rows.values())]
        lines += ['<table class="functions">', "<tr><th>" + "".join(f"<th>{t}" for t in used)]
        for operation, row in rows.items():
            lines.append(f"<tr><td>{operation}" + "".join(f"<td>{cell(row.get(t, []))}" for t in used))
        lines.append("</table>")
    if others:
        lines += ["", ("Without a type: " if rows else "") + ", ".join(f"\\ref {name}" for name in others) + "."]
    return lines


def page(include):
    headers = [include / "zepcore.h"] + sorted(p for p in include.glob("*.h") if p.name.startswith("zep") and
                                               p.name != "zepcore.h") + sorted(include.glob("*/*.h"))
    lines = ["# Functions by type {#function_table}", "", "[TOC]", "",
             "A column is the type of the elements that a function reads, or writes where it reads none; a dot is the plain "
             "function, a name the form: `I` in place, `Sfs` with a scale factor, `A11` and the like an accuracy class, a second "
             "type the one of the result.", ""]
    count = 0
    for header in headers:
        text = header.read_text()
        names = [name for name, _ in declared(text)]
        if not names:
            continue
        count += len(names)
        path = header.relative_to(include).as_posix()
        lines += [f"## {title(text)} {{#functions_{re.sub('[^a-z0-9]', '_', path)}}}", "", f"Header: \\ref {path}", ""]
        lines += table(names) + [""]
    lines += [f"{count} functions in all, and the C++ layer of \\ref mozep.h.", ""]
    return "\n".join(lines)


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    Path(sys.argv[2]).write_text(page(Path(sys.argv[1])))
