#!/usr/bin/env python3
"""Compiles headers by themselves: each must bring all that it uses.

usage: tools/check_headers.py

A header that its source includes before all else is left to whoever compiles that source.
"""

import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
COMPILER = [os.environ.get("CXX", "g++"), "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror",
            "-Isrc", "-Itests", "-I.", "-x", "c++", "-"]

# What window tests share may include the toolkit; no other header may.
QT_HEADERS = "tests/app/"
QT_FLAGS = ["-fPIC", *subprocess.run(["pkg-config", "--cflags", "Qt6Test", "Qt6Widgets"], text=True,
                                     capture_output=True, check=True).stdout.replace("-I", "-isystem").split()]


FIRST_INCLUDE = re.compile(r'^#include ["<](.+)[">]', re.MULTILINE)


def opens_its_source(header):
    source = header.with_suffix(".cpp")
    first = FIRST_INCLUDE.search(source.read_text()) if source.exists() else None
    return bool(first) and header.as_posix().endswith("/" + first[1])


def compile_alone(header):
    """What the compiler says; empty when the header stands by itself."""
    source = f'#include "{header}"\n'
    flags = QT_FLAGS if header.startswith(QT_HEADERS) else []
    result = subprocess.run(COMPILER + flags, cwd=ROOT, input=source, text=True, capture_output=True)
    if result.returncode == 0:
        return ""
    return f"{header} does not compile alone:\n{result.stderr}"


def main():
    headers = [str(path.relative_to(ROOT)) for top in ("src", "tests", "tools", "bench", "fuzz")
               for path in sorted((ROOT / top).rglob("*.h")) if not opens_its_source(path)]
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        errors = [error for error in pool.map(compile_alone, headers) if error]
    for error in errors:
        print(error)
    print(f"{len(headers)} headers, {len(errors)} in error")
    return 1 if errors or not headers else 0


if __name__ == "__main__":
    sys.exit(main())
