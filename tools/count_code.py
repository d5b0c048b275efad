#!/usr/bin/env python3
"""Prints how much code and how much of tests there is: bytes without comments and white space.

usage: tools/count_code.py

White space counts nowhere, not in strings either, so neither long lines nor short ones win anything. As tests
count tests/, fuzz/ and what under tools/ only proves something; as code src/ and the rest of tools/. A share is
that of tests to code.
"""

import io
import re
import tokenize
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
FOLDERS = ["base", "framework/core", "framework/qt", "iff", "chunks", "psd", "document", "display", "app"]
PROVING = ("check_", "coverage", "fuzz", "same_answers", "sweep_calls", "trace_walk")

# What may hold what looks like a comment comes first and is kept.
CPP = re.compile(r'R"(?P<end>[^(\s]*)\(.*?\)(?P=end)"|"(?:\\.|[^"\\])*"|\b\d[\w\']*|\'(?:\\.|[^\'\\])+\''
                 r"|(?P<comment>//[^\n]*|/\*.*?\*/)", re.DOTALL)
SHELL = re.compile(r""""(?:\\.|[^"\\])*"|'[^']*'|(?<!\S)(?P<comment>#[^\n]*)""", re.DOTALL)


def without_comments(pattern, text):
    return pattern.sub(lambda match: "" if match["comment"] else match[0], text)


def python_code(text):
    """A string that is a statement by itself is a comment."""
    kept, line = [], []
    for token in tokenize.generate_tokens(io.StringIO(text).readline):
        if token.type == tokenize.COMMENT or not token.string.strip():
            pass
        else:
            line.append(token)
        if token.type in (tokenize.NEWLINE, tokenize.ENDMARKER):
            if [one.type for one in line] != [tokenize.STRING]:
                kept += [one.string for one in line]
            line = []
    return "".join(kept)


def code_size(path):
    """Bytes of code in a file; none in one that is not C++, Python or a shell script."""
    if path.suffix in (".h", ".cpp"):
        code = without_comments(CPP, path.read_text(encoding="utf-8"))
    elif path.suffix == ".py" or path.read_bytes().startswith(b"#!/usr/bin/env python3"):
        code = python_code(path.read_text(encoding="utf-8"))
    elif path.read_bytes().startswith(b"#!/bin/bash"):
        code = without_comments(SHELL, path.read_text(encoding="utf-8"))
    else:
        code = ""
    return len("".join(code.split()).encode())


def place(path):
    """The row and the column of a file, given from the project's folder on."""
    top, _, inside = path.partition("/")
    folder, _, rest = inside.replace("framework_", "framework/", 1).partition("/")
    if folder == "framework":
        folder += "/" + re.split("[/_]", rest)[0]
    if top == "tools":
        return "tools", "tests" if inside.startswith(PROVING) else "code"
    if top == "tests":
        return folder if "/" in inside else "support", "tests"
    return (folder, "code") if top == "src" else (top, "tests")


def row(name, code, tests):
    share = f"{tests / code:7.0%}" if code else "      -"
    print(f"{name:<16} {code:>7} {tests:>7} {share}")


def main():
    sizes = Counter()
    for top in ("src", "tests", "fuzz", "tools"):
        for path in (ROOT / top).rglob("*"):
            if path.is_file() and "corpus" not in path.parts and "__pycache__" not in path.parts:
                sizes[place(path.relative_to(ROOT).as_posix())] += code_size(path)
    names = {name for (name, _), size in sizes.items() if size > 0} - {*FOLDERS, "tools"}
    print(f"{'bytes of':<16} {'code':>7} {'tests':>7}   share")
    for name in [*FOLDERS, *sorted(names), "tools"]:
        row(name, sizes[name, "code"], sizes[name, "tests"])
    row("all", *(sum(size for (_, kind), size in sizes.items() if kind == one) for one in ("code", "tests")))
    bench = sum(code_size(path) for path in (ROOT / "bench").rglob("*") if path.is_file())
    print(f"bench stands beside with {bench}")


if __name__ == "__main__":
    main()
