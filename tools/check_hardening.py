#!/usr/bin/env python3
"""Checks that programs are built as what reads files of strangers should be.

usage: tools/check_hardening.py PROGRAM...

Reads from each program that it can be loaded anywhere (PIE), that what the loader fills in cannot be written
afterwards (full RELRO), that its stack is guarded, that calls of the C library are checked where sizes are known, and
those of the standard library's containers, and that nothing in it is both writable and executable. Prints what is
missing, and ends with status 1 then.
"""

import subprocess
import sys


def read(option, program):
    return subprocess.run(["readelf", "-W", option, program], capture_output=True, text=True, check=True).stdout


def missing(program):
    header, segments, dynamic, symbols = (read(option, program) for option in ("-h", "-l", "-d", "--dyn-syms"))
    found = {
        "PIE": "DYN (" in header and "INTERP" in segments,
        "RELRO": "GNU_RELRO" in segments,
        "binding at once": "BIND_NOW" in dynamic or "NOW" in dynamic.split("FLAGS_1")[-1].split("\n")[0],
        "a guarded stack": "__stack_chk_fail" in symbols,
        "checked calls": "_chk@" in symbols,
        "checked containers": "__glibcxx_assert_fail" in symbols,
        # Without this header a stack is code, too.
        "a stack that is no code": [line.split()[6] for line in segments.splitlines() if "GNU_STACK" in line] == ["RW"],
        "segments that are written or run": not any("LOAD" in line and "RWE" in line for line in segments.splitlines()),
    }
    return [name for name, is_there in found.items() if not is_there]


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__.split("\n\n")[1])
    lacking = {program: missing(program) for program in sys.argv[1:]}
    for program, names in lacking.items():
        for name in names:
            print(f"{program}: lacks {name}")
    return 1 if any(lacking.values()) else 0


if __name__ == "__main__":
    sys.exit(main())
