#!/usr/bin/env python3
"""Takes the walk through the program under a trace: what it changes on the disk, and which sockets it opens.

usage: tools/trace_walk.py PROGRAM

The program's own code writes its settings, its registration with the shell and the page that was asked for. What
toolkit and desktop write for themselves is listed beside that, by path pattern, and all else is a fault. Sockets are
local ones; only while a page is printed the printing service may be asked, wherever it is. Needs strace: where it may
not trace, the status is 77.
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

WALK = Path(__file__).resolve().parent.parent / "tests/app/walk_test.py"
MAY_NOT_TRACE = 77

OWN = {  # by the path from the home or the folder for temporary files on
    "settings": r"config/Talvorine(/Internal(/\.lock|/\.?Talvorine Graphics File Viewer\.ini(\.new)?)?)?",
    "registration": r"data/(applications|mime/packages|icons/hicolor/scalable/apps)"
                    r"(/com\.talvorine\.Vistrel\.(desktop|xml|svg)(\.\w{6})?)?",
    "page": r"chain\.pdf",
}
OTHERS = {
    "folders on the way": r"config|data|data/mime|data/icons(/hicolor(/scalable)?)?",
    "databases of the desktop": r"data/mime/.*|data/applications/\.?mimeinfo\.cache.*",
    "the file dialog's last folders": r"config/QtProject\.conf(\.\w+)?",
    "caches of fonts and graphics": r"\.cache(/(fontconfig|mesa_shader_cache|qtshadercache).*)?",
    "nothing at all": r"/dev/null",
    "a file before it has a name": r"/proc/self/fd/\d+",
    "the toolkit's folder for sockets": r"runtime-[^/]+",
}

CHANGES = ("creat,rename,renameat,renameat2,unlink,unlinkat,rmdir,mkdir,mkdirat,mknod,mknodat,link,linkat,symlink,"
           "symlinkat,truncate,chmod,fchmodat,chown,lchown,fchownat,utime,utimes,utimensat,setxattr,lsetxattr")
FOR_WRITING = re.compile(r"O_(WRONLY|RDWR|CREAT|TRUNC)")
CALL = re.compile(r"(\w+)\((.*)\) += (-?\d+)")
PRINTING = re.compile(r'/printsupport/|\.pdf"')
SERVICE = re.compile(r"_port=htons\(631\)")


def run_walk(program, folder):
    """The traced calls of each process and thread, in order."""
    log = os.path.join(folder, "calls")
    traced = Path(folder, "traced")
    traced.write_text(f"#!/bin/sh\nexec strace -qq -ff -s 4096 -o '{log}' -e trace={CHANGES},open,openat,socket,connect "
                      f"-- '{program}' \"$@\"\n")
    traced.chmod(0o755)
    subprocess.run([sys.executable, WALK, traced], env={**os.environ, "TMPDIR": folder}, check=True)
    return [[call.groups() for call in map(CALL.match, file.read_text(errors="replace").splitlines()) if call]
            for file in Path(folder).glob("calls.*")]


def written_paths(name, arguments):
    if name in ("socket", "connect") or name.startswith("open") and not FOR_WRITING.search(arguments):
        return []
    return re.findall(r'"((?:\\.|[^"\\])*)"', arguments)


def kind_of(path):
    return next((kind for kind, pattern in {**OWN, **OTHERS}.items() if re.fullmatch(pattern, path)), None)


def strange_sockets(calls):
    """Those of one thread that are not local and not for printing."""
    printing = [i for i, (_, arguments, _) in enumerate(calls) if PRINTING.search(arguments)]
    for i, (name, arguments, _) in enumerate(calls):
        is_printing = bool(printing) and printing[0] < i < printing[-1]
        if name == "socket" and not arguments.startswith("AF_UNIX") and not is_printing:
            yield arguments
        if name == "connect" and "AF_UNIX" not in arguments and not SERVICE.search(arguments):
            yield arguments


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    if subprocess.run(["strace", "-o", "/dev/null", "true"], check=False, stderr=subprocess.DEVNULL).returncode != 0:
        print("Tracing is not permitted here.")
        sys.exit(MAY_NOT_TRACE)
    with tempfile.TemporaryDirectory() as folder:
        threads = run_walk(os.path.abspath(sys.argv[1]), folder)
        home = re.compile(re.escape(folder) + "/(tmp[^/]+/)?")
    written = {home.sub("", path) for calls in threads for name, arguments, answer in calls if int(answer) >= 0
               for path in written_paths(name, arguments)}
    kinds = {path: kind_of(path) for path in written}
    wrong = [f"writes {path}" for path, kind in kinds.items() if not kind]
    wrong += [f"opens a socket: {socket}" for calls in threads for socket in strange_sockets(calls)]
    wrong += [f"never writes its {kind}" for kind in OWN if kind not in kinds.values()]
    for kind in sorted({kind for kind in kinds.values() if kind}):
        print(f"{kind}: {', '.join(sorted(path for path in kinds if kinds[path] == kind))}")
    print(*wrong, f"{sum(map(len, threads))} calls of {len(threads)} threads, {len(wrong)} faults", sep="\n")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
