#!/usr/bin/env python3
"""Checks every #include line against the arrows between the folders, and for circles.

Headers include each other nowhere, and in the folders of UNITS neither do units: a header with every source that
implements it. A source implements the header of its own name, or else the one that it includes first.

usage: tools/check_layers.py [--self-test]

Prints file:line and the arrow that is forbidden, and ends with status 1 when there is one.
"""

import re
import sys
from pathlib import Path

CORE = ["base", "kernels", "reading", "framework/core", "iff", "chunks", "psd", "document", "display"]  # needs no Qt

# What each folder under src/ may include besides its own files. base may be included from everywhere.
ARROWS = {
    "base": [],
    "kernels": [],
    "reading": [],
    "framework/core": ["kernels"],
    "framework/qt/kit": ["framework/core"],
    "framework/qt/wnd": ["framework/core", "framework/qt/kit"],
    "framework/qt/program": ["framework/core", "framework/qt/kit", "framework/qt/wnd"],
    "iff": ["framework/core", "reading"],
    "chunks": ["iff", "kernels", "reading"],
    "psd": ["iff/byte_stream.h", "kernels", "reading"],
    "document": ["framework/core", "iff", "psd", "reading"],
    "display": ["document", "chunks", "iff", "kernels", "psd", "reading", "framework/core"],
    "app": CORE + ["framework/qt/kit/file_watch.h", "framework/qt/kit/natural_order.h", "framework/qt/wnd", "framework/qt/program"],
}

UNITS = ["src/framework/qt/"]

# tests/framework_core mirrors src/framework/core: it may include what that may include, that folder itself and
# tests/support.
MIRRORS = {"tests/" + folder.replace("/", "_"): folder for folder in ARROWS}

# What tests may include besides: the containers are tried on chunks that have fields.
TESTS_ONLY = {"tests/iff": ["chunks/ilbm_chunks.h"]}

# The same for what else stands beside src/.
BESIDE_SRC = {
    "tools": CORE + ["tests/support"],
    "bench/peers": [],
    "bench/startup": [],
    "bench/windows": CORE + ["framework/qt/wnd", "app", "tests/support"],
    "bench": CORE + ["tests/support"],
    "fuzz": CORE + ["tests/support"],
    "tests/support": CORE,
    "tests/tools": CORE + ["tests/support", "tools"],
    "tests": CORE + ["tests/support"],
}

# Qt headers stand in the .cpp files of these folders only, and in what window tests share.
QT_FOLDERS = ["framework/qt/kit", "framework/qt/wnd", "framework/qt/program", "tests/framework_qt_kit", "tests/app",
              "bench/peers", "bench/startup", "bench/windows"]

INCLUDE = re.compile(r'\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)')
QT_HEADER = re.compile(r"Q[A-Z]|Qt|q[a-z]*\.h$|private/q")


def folder_of(path):
    """src/iff/iff_id.h -> iff, tests/iff/iff_id_test.cpp -> tests/iff; None where no rule is held."""
    names = ARROWS if path.startswith("src/") else MIRRORS | BESIDE_SRC
    inside = path.removeprefix("src/")
    return next((name for name in names if inside.startswith(name + "/")), None)


def allowed(folder):
    """Folders and files that files of a folder may include."""
    if folder in MIRRORS:
        return [folder, "tests/support"] + allowed(MIRRORS[folder]) + TESTS_ONLY.get(folder, [])
    return [folder, "base"] + (ARROWS | BESIDE_SRC)[folder]


def resolve(includer, name, files):
    """The path that an include in quotes means, or None."""
    for place in (str(Path(includer).parent), "src", "tests", "."):
        path = str(Path(place) / name)
        if path in files:
            return path
    return None


def complaints(files):
    """files: path -> text. One line for each include that must not be."""
    found = []
    header_includes = {}
    unit_includes = {}
    for path, text in sorted(files.items()):
        folder = folder_of(path)
        if folder is None:
            found.append(f"{path}:1: stands in no folder that has arrows")
            continue
        may_include = allowed(folder)
        unit = unit_of(path, text, files)
        for number, line in enumerate(text.splitlines(), 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            quoted, bracketed = match.groups()
            if bracketed:
                may_use_qt = folder in QT_FOLDERS and (path.endswith(".cpp") or folder == "tests/app")
                if QT_HEADER.match(bracketed) and not may_use_qt:
                    found.append(f"{path}:{number}: <{bracketed}> belongs in the .cpp files of framework/qt")
                if resolve(path, bracketed, files):
                    found.append(f"{path}:{number}: <{bracketed}> is of this project and stands in quotes")
                continue
            if folder in QT_FOLDERS and quoted == Path(path).stem + ".moc" and path.endswith(".cpp"):
                continue  # made by the toolkit's compiler from this very file
            target = resolve(path, quoted, files)
            if target is None:
                found.append(f'{path}:{number}: "{quoted}" is no file of this project')
                continue
            target_name = target.removeprefix("src/")
            if folder_of(target) not in may_include and target_name not in may_include:
                found.append(f"{path}:{number}: {folder} -> {target_name} is no arrow")
            if path.endswith(".h"):
                header_includes.setdefault(path, []).append(target)
            if unit and target != unit and target.startswith(tuple(UNITS)):
                unit_includes.setdefault(unit, []).append(target)
    return found + cycles(header_includes, "headers") + cycles(unit_includes, "units")


def unit_of(path, text, files):
    """The header that a file of UNITS is or implements; None where no circle of units is looked for."""
    if not path.startswith(tuple(UNITS)):
        return None
    own = str(Path(path).with_suffix(".h"))
    if own in files:
        return own
    includes = (INCLUDE.match(line) for line in text.splitlines())
    first = next((match[1] for match in includes if match and match[1]), None)
    return first and resolve(path, first, files)


def cycles(includes, kind):
    """One line for each file that is reached again from itself."""
    found = []
    done = set()

    def visit(path, way):
        if path in way:
            ring = way[way.index(path):] + [path]
            found.append(f"{path}:1: {kind} include each other: " + " -> ".join(ring))
        elif path not in done:
            for target in includes.get(path, []):
                visit(target, way + [path])
            done.add(path)

    for path in sorted(includes):
        visit(path, [])
    return found


def self_test():
    """Plants one fault at a time into a sound tree and expects it to be reported."""
    sound = {
        "src/base/types.h": "#include <cstdint>\n",
        "src/framework/core/file.h": '#include "base/types.h"\n',
        "src/framework/qt/kit/list.h": '#include "framework/core/file.h"\n',
        "src/framework/qt/wnd/wnd.h": '#include "framework/core/file.h"\nclass QWidget;\n',
        "src/framework/qt/wnd/wnd.cpp":
            '#include <QWidget>\n#include "framework/qt/wnd/wnd.h"\n#include "framework/qt/kit/list.h"\n#include "wnd.moc"\n',
        "src/framework/qt/wnd/view.h": '#include "framework/qt/wnd/wnd.h"\n',
        "src/iff/byte_stream.h": '#include "base/types.h"\n',
        "src/iff/iff_chunk.h": '#include "iff/byte_stream.h"\n',
        "src/psd/psd_image.h": '#include "iff/byte_stream.h"\n',
        "tests/support/builder.h": '#include "base/types.h"\n',
        "tests/psd/psd_test.cpp": '#include "psd/psd_image.h"\n#include "support/builder.h"\n',
        "tests/framework_qt_kit/list_test.cpp": '#include <QApplication>\n#include "framework/qt/kit/list.h"\n',
    }
    faults = [
        ("src/framework/core/file.h", '  #  include "framework/qt/wnd/wnd.h"', "is no arrow"),
        ("src/psd/psd_image.h", '#include "iff/iff_chunk.h"', "is no arrow"),
        ("tests/psd/psd_test.cpp", '#include "framework/core/file.h"', "is no arrow"),
        ("tests/psd/psd_test.cpp", "#include <qimage.h>", "belongs in"),
        ("src/framework/qt/wnd/wnd.h", "#include <QtGui/QImage>", "belongs in"),
        ("src/iff/iff_chunk.h", "#include <base/types.h>", "stands in quotes"),
        ("src/base/types.h", '#include "base/no_such.h"', "is no file"),
        ("src/iff/byte_stream.h", '#include "iff/iff_chunk.h"', "iff/byte_stream.h -> src/iff/iff_chunk.h"),
        # A source of another name than the header that it implements.
        ("src/framework/qt/wnd/drawing.cpp",
         '#include "framework/qt/wnd/wnd.h"\n#include "framework/qt/wnd/view.h"', ":1: units include each other"),
        ("src/stray.h", "", ":1: stands in no folder"),
    ]
    failed = [f"sound tree: {line}" for line in complaints(sound)]
    for path, line, expected in faults:
        planted = {**sound, path: sound.get(path, "") + line + "\n"}
        if not expected.startswith(("iff", ":")):
            expected = f"{path}:{planted[path].count(chr(10))}: .*{expected}"
        if not any(re.search(expected, text) for text in complaints(planted)):
            failed.append(f"not caught: {line} in {path}")
    return failed


def main():
    if sys.argv[1:] == ["--self-test"]:
        found = self_test()
    else:
        root = Path(__file__).resolve().parent.parent
        files = {
            str(path.relative_to(root)): path.read_text(encoding="utf-8")
            for top in ("src", "tests", "tools", "bench", "fuzz")
            for path in (root / top).rglob("*")
            if path.suffix in (".h", ".cpp")
        }
        found = complaints(files)
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
