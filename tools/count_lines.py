#!/usr/bin/env python3
"""Prints the lines of code and of tests per folder; blank lines and lines of comment alone do not count.

usage: tools/count_lines.py
"""

import re
from collections import Counter
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
NOT_CODE = re.compile(r"\s*(//.*)?$")
FOLDERS = ["base", "framework/core", "framework/qt", "iff", "chunks", "psd", "document", "display", "app"]


def lines_in(top):
    """Folder below top, as one of FOLDERS or by its first name -> lines of its sources."""
    counts = Counter()
    for path in (ROOT / top).rglob("*"):
        if path.suffix not in (".h", ".cpp"):
            continue
        inside = path.relative_to(ROOT / top).as_posix()
        folder = next((name for name in FOLDERS if inside.startswith((name + "/", name.replace("/", "_") + "/"))),
                      inside.partition("/")[0] if "/" in inside else "support")
        text = path.read_text(encoding="utf-8")
        counts[folder] += sum(1 for line in text.splitlines() if not NOT_CODE.match(line))
    return counts


def row(name, code, tests):
    share = f"{tests / code:6.0%}" if code else "     -"
    print(f"{name:<16} {code:>7} {tests:>7} {share}")


def main():
    code, tests = lines_in("src"), lines_in("tests")
    print(f"{'folder':<16} {'src':>7} {'tests':>7}  share")
    others = sorted((set(code) | set(tests)) - set(FOLDERS))
    for folder in FOLDERS + others:
        row(folder, code[folder], tests[folder])
    row("all", code.total(), tests.total())
    beside = {top: lines_in(top).total() for top in ("tools", "bench", "fuzz")}
    print("beside them: " + ", ".join(f"{top} {count}" for top, count in beside.items()))


if __name__ == "__main__":
    main()
