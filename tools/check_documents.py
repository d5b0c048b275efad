#!/usr/bin/env python3
"""Tries what the documents tell their readers to type.

usage: tools/check_documents.py BUILD
       tools/check_documents.py --links FOLDER
       tools/check_documents.py --self-test

Fenced blocks marked sh are run, each in a shell of its own in the root of a copy of the tree, whose build/release is
BUILD; the first command that fails ends the block. Blocks marked console are only shown: of the commands in them,
which are the lines after "$ " or, where no line has that, all lines, every script and file of the tree has to exist,
and every program in build/release. So do the files that a document links to, of which alone --links sees to, for
documents that were installed.
"""

import glob
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
DOCUMENTS = ["README.md", "CONTRIBUTING.md", "docs/*.md"]
KINDS = ["sh", "console", "cpp", "text"]  # another mark would be one that nobody looks at
LONGEST = 120  # seconds of a block
LEFT_OUT = [".git", "build", ".cache", "__pycache__"]

FENCE = re.compile(r" *```(.*)")
LINK = re.compile(r"\]\((?!https?:)([^)#]+)[^)]*\)")
SETTING = re.compile(r"\w+=")


class Block:
    def __init__(self, kind, line):
        self.kind = kind
        self.line = line  # of the fence before it
        self.lines = []

    def commands(self):
        prompted = [line[2:] for line in self.lines if line.startswith("$ ")]
        return prompted or self.lines


def blocks_of(text):
    """The fenced blocks of a document, and the other lines with their numbers."""
    blocks, others, open_block = [], [], None
    for number, line in enumerate(text.splitlines(), 1):
        fence = FENCE.match(line)
        if fence and open_block:
            open_block = None
        elif fence:
            open_block = Block(fence[1].strip(), number)
            blocks.append(open_block)
        elif open_block:
            open_block.lines.append(line)
        else:
            others.append((number, line))
    return blocks, others, open_block


def named_paths(command, tree):
    """The words of a command that name something of the tree."""
    for part in re.split(r"&&|\|\|?|;", command.split(" #")[0]):
        words = [word for word in part.split() if not SETTING.match(word)]
        for place, word in enumerate(words):
            first = word.split("/")[0]
            if "/" not in word or word.startswith(("/", "~", "-")):
                continue
            if place == 0 or first in (".", "build") or (tree / first).exists():
                yield word


def exists(path, tree):
    path = os.path.normpath(path)
    if path.startswith("build/") and not path.startswith("build/release/"):
        return True  # of a build that may not have been made
    return bool(glob.glob(str(tree / path)))


def run_block(block, tree, home):
    """What the block printed, where it fails."""
    environment = {**os.environ, "HOME": str(home), "XDG_RUNTIME_DIR": str(home), "QT_QPA_PLATFORM": "offscreen"}
    script = "set -euo pipefail\n" + "\n".join(block.lines)
    with subprocess.Popen(["bash", "-c", script], cwd=tree, env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, start_new_session=True) as shell:
        try:
            output, _ = shell.communicate(timeout=LONGEST)
        except subprocess.TimeoutExpired:
            os.killpg(shell.pid, signal.SIGKILL)  # what it has started, too
            return f"takes longer than {LONGEST} s"
    return f"ends with status {shell.returncode}:\n{output}" if shell.returncode != 0 else None


def complaints(name, tree, home):
    """What is wrong in one document of a tree, in which its blocks leave what they make."""
    blocks, _, unclosed = blocks_of((tree / name).read_text(encoding="utf-8"))
    if unclosed:
        yield f"{name}:{unclosed.line}: a block without an end"
    for block in blocks:
        if block.kind not in KINDS:
            yield f"{name}:{block.line}: a block is marked {', '.join(KINDS)}, and not '{block.kind}'"
        if block.kind == "sh":
            fault = run_block(block, tree, home)
            if fault:
                yield f"{name}:{block.line}: the block {fault}"
        if block.kind == "console":
            for path in (path for command in block.commands() for path in named_paths(command, tree)):
                if not exists(path, tree):
                    yield f"{name}:{block.line}: there is no {path}"
    yield from dead_links(name, tree)


def dead_links(name, tree):
    """What a document of a tree links to and does not have."""
    _, others, _ = blocks_of((tree / name).read_text(encoding="utf-8"))
    for number, line in others:
        for target in LINK.findall(line):
            if not (tree / name).parent.joinpath(target).exists():
                yield f"{name}:{number}: there is no {target}"


def dead_links_below(folder):
    documents = [str(path.relative_to(folder)) for path in sorted(folder.rglob("*.md"))]
    return [line for name in documents for line in dead_links(name, folder)] if documents else ["no documents"]


def documents_of(tree):
    return [str(path.relative_to(tree)) for pattern in DOCUMENTS for path in sorted(tree.glob(pattern))]


def complaints_of_copy(source, build):
    """Those about all documents of a tree. In the copy they come one after the other, as a reader takes them."""
    with tempfile.TemporaryDirectory() as folder:
        tree, home = Path(folder, "tree"), Path(folder, "home")
        shutil.copytree(source, tree, ignore=shutil.ignore_patterns(*LEFT_OUT), symlinks=True)
        home.mkdir(mode=0o700)
        (tree / "build").mkdir()
        (tree / "build" / "release").symlink_to(build)
        return [line for name in documents_of(tree) for line in complaints(name, tree, home)]


SOUND = """[The other one](docs/other.md#part), [elsewhere](https://example.org/x)
```sh
tools/works
build/release/program
touch made
```
```sh
test -e made
```
```console
$ tools/works && A=b ./top samples/*   # and tools/nowhere
What it prints: tools/nowhere
```
```console
build/dev/no_such FILE
```
"""

# What is put into the sound document, and what is then said of it.
FAULTS = [
    ("```sh\nfalse | cat\ntrue\n```", "README.md:17: the block ends with status 1"),
    ("```console\ntool/works\n```", "README.md:17: there is no tool/works"),
    ("```console\n$ python3 tools/nowhere.py\n```", "README.md:17: there is no tools/nowhere.py"),
    ("```console\n$ true && A=b no/where\n```", "README.md:17: there is no no/where"),
    ("```console\n$ build/release/nowhere\n```", "README.md:17: there is no build/release/nowhere"),
    ("```\ntools/nowhere\n```", "README.md:17: a block is marked"),
    ("```sh\ntrue", "README.md:17: a block without an end"),
    ("![It](docs/nowhere.png)", "README.md:17: there is no docs/nowhere.png"),
]


def plant(tree, text):
    for folder in ("tools", "docs", "samples", "build/release"):
        (tree / folder).mkdir(parents=True)
    for script in ("tools/works", "top", "build/release/program"):
        (tree / script).write_text("#!/bin/sh\n")
        (tree / script).chmod(0o755)
    (tree / "samples/one").touch()
    (tree / "docs/other.md").write_text("[Back](../README.md)\n")
    (tree / "README.md").write_text(text)


def self_test():
    """Plants one fault at a time into a sound document and expects it, and nothing else, to be reported."""
    failed = []
    for text, expected in [("", None), *FAULTS]:
        with tempfile.TemporaryDirectory() as folder:
            tree = Path(folder, "tree")
            plant(tree, SOUND + text + "\n")
            found = complaints_of_copy(tree, tree / "build" / "release")
            if (tree / "made").exists():
                failed.append("a block was run in the tree itself")
        if len(found) != (1 if expected else 0) or (expected and not found[0].startswith(expected)):
            failed.append(f"{text!r}: expected {expected}, found {found}")
    return failed


def main():
    if len(sys.argv) == 3 and sys.argv[1] == "--links":
        found = dead_links_below(Path(sys.argv[2]))
    elif len(sys.argv) != 2:
        sys.exit(__doc__)
    elif sys.argv[1] == "--self-test":
        found = self_test()
    else:
        found = complaints_of_copy(ROOT, Path(sys.argv[1]).resolve())
    for line in found:
        print(line)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
