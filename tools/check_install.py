#!/usr/bin/env python3
"""Installs a build into a folder of its own and looks at what came there.

usage: tools/check_install.py BUILD

What is installed is what share/installed_files.txt lists; desktop entry, AppStream data and manual pages pass those
who know their formats; icons have the sizes of their folders; documents link to what came with them; and all who name
the release name the same.
"""

import os
import re
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

from check_documents import dead_links_below

ROOT = Path(__file__).resolve().parents[1]
LIST = ROOT / "share" / "installed_files.txt"
ID = "com.talvorine.Vistrel"


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*") if not path.is_dir())


def differences_of_list(usr):
    there = set(files_below(usr))
    listed = set(LIST.read_text().split())
    return ([f"{name}: is listed and was not installed" for name in sorted(listed - there)] +
            [f"{name}: was installed and is not listed" for name in sorted(there - listed)])


def answer(*command):
    """What the command says, where it fails."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    return [done.stdout.strip()] if done.returncode != 0 else []


def warnings_of_page(page):
    # Laid out for a terminal, but not put into its characters; what it warns of is no failure of its own.
    done = subprocess.run(["man", "--warnings", "--local-file", "--troff-device=utf8", "--ditroff", page],
                          stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True,
                          env={**os.environ, "LC_ALL": "C.UTF-8"})
    return [f"{page.name}: {done.stderr.strip()}"] if done.returncode != 0 or done.stderr else []


def complaints(usr):
    share = usr / "share"
    found = answer("desktop-file-validate", share / "applications" / f"{ID}.desktop")
    found += answer("appstreamcli", "validate", "--no-net", "--pedantic", share / "metainfo" / f"{ID}.metainfo.xml")
    for page in sorted((share / "man").rglob("*.1")):
        found += warnings_of_page(page)
    return found


def mime_types(file):
    return first_match(r"^MimeType=(.*)$", file.read_text())


def differences_of_types(usr):
    """Thumbnails are made of the types that the program opens."""
    opened = mime_types(usr / "share" / "applications" / f"{ID}.desktop")
    return [] if mime_types(usr / "share" / "thumbnailers" / "vistrel.thumbnailer") == opened else [
        "vistrel.thumbnailer: other types than in the desktop entry"]


def wrong_icons(usr):
    wrong = []
    for icon in sorted((usr / "share" / "icons").rglob("*.png")):
        size = struct.unpack(">II", icon.read_bytes()[16:24])
        if icon.parent.parent.name != "%dx%d" % size:
            wrong.append(f"{icon.relative_to(usr)}: is %d by %d pixels" % size)
    return wrong


def first_match(pattern, text):
    match = re.search(pattern, text, re.MULTILINE)
    return match.group(1) if match else None


def differences_of_release(build, usr):
    metainfo = (usr / "share" / "metainfo" / f"{ID}.metainfo.xml").read_text()
    changes = (usr / "share" / "doc" / "vistrel" / "CHANGELOG.md").read_text()
    said = subprocess.run([usr / "bin" / "vistrel", "--version"], capture_output=True, text=True, check=True).stdout
    release = first_match(r"^CMAKE_PROJECT_VERSION:STATIC=(.*)$", (build / "CMakeCache.txt").read_text())
    date = first_match(r"^## \S+ \((.*)\)$", changes)
    names = {"AppStream data": first_match(r'<release version="([^"]*)"', metainfo),
             "CHANGELOG.md": first_match(r"^## (\S+)", changes),
             "vistrel --version": said.split()[-1]}
    different = [f"{where}: release {name}, and {release} in CMakeLists.txt" for where, name in names.items()
                 if name != release]
    if first_match(r'<release [^>]*date="([^"]*)"', metainfo) != date:
        different.append(f"AppStream data: not of {date}, as CHANGELOG.md has it")
    return different


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    build = Path(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["cmake", "--install", build, "--prefix", "/usr"], env={**os.environ, "DESTDIR": folder},
                       check=True, stdout=subprocess.DEVNULL)
        usr = Path(folder, "usr")
        documentation = usr / "share" / "doc" / "vistrel"
        wrong = differences_of_list(usr) or (complaints(usr) + differences_of_types(usr) + wrong_icons(usr) +
                                              dead_links_below(documentation) + differences_of_release(build, usr))
    for line in wrong:
        print(line)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
