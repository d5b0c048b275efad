#!/usr/bin/env python3
"""From exec to the right pixel on the screen: the viewer beside a bare program of the toolkit.

usage: startup_bench.py VISTREL BARE_WINDOW [RUNS]

Both show the same picture of 1024 x 1024 on a screen of their own (Xvfb), in turn. Prints the medians and
their ratio.
"""

import mmap
import os
import statistics
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SIDE = 1024
MARK = (0xF1, 0x27, 0x9B)  # the colour of the whole picture, which nothing else on the screen has
DEADLINE = 30  # seconds


def chunk(name, body):
    return name + struct.pack(">I", len(body)) + body + b"\0" * (len(body) % 2)


def ilbm():
    """Eight planes, all pixels of the last of 256 colours."""
    header = struct.pack(">HHHHBBBBHBBHH", SIDE, SIDE, 0, 0, 8, 0, 1, 0, 0, 1, 1, SIDE, SIDE)
    row = bytes([129, 255])  # a run of 128 bytes: one plane row
    return chunk(b"FORM", b"ILBM" + chunk(b"BMHD", header) + chunk(b"CMAP", bytes(765) + bytes(MARK)) +
                 chunk(b"BODY", row * (8 * SIDE)))


class Screen:
    """Xvfb keeps what it shows in a file, an X window dump: header, colours, then four bytes for each pixel."""

    def __init__(self, folder):
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1600x1200x24", "-fbdir",
                                        folder, "-nolisten", "tcp", "-noreset"], pass_fds=[write_end],
                                       stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            self.display = ":" + pipe.readline().strip()
        with open(os.path.join(folder, "Xvfb_screen0"), "rb") as file:
            self.memory = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        header = struct.unpack(">25I", self.memory[:100])
        self.pixels = header[0] + 12 * header[19]
        self.mark = bytes([MARK[2], MARK[1], MARK[0]])

    def find_mark(self):
        place = self.memory.find(self.mark, self.pixels)
        return place if place >= 0 else None

    def shows_mark(self, place):
        return self.memory[place:place + 3] == self.mark


def wait(condition):
    end = time.monotonic() + DEADLINE
    while not condition():
        if time.monotonic() > end:
            sys.exit("the picture has not come to the screen")
        time.sleep(0.0005)


def run(screen, command, place):
    """Milliseconds until the pixel at that place has the mark's colour; without one, the place of the last."""
    environment = {**os.environ, "DISPLAY": screen.display, "QT_QPA_PLATFORM": "xcb"}
    start = time.perf_counter()
    program = subprocess.Popen(command, env=environment)
    wait((lambda: screen.shows_mark(place)) if place else screen.find_mark)
    taken = (time.perf_counter() - start) * 1000
    time.sleep(0.3)  # all of it is there
    last = screen.memory.rfind(screen.mark)
    program.kill()
    program.wait()
    wait(lambda: screen.find_mark() is None)
    return taken if place else last


def main():
    vistrel, bare = sys.argv[1:3]
    runs = int(sys.argv[3]) if len(sys.argv) > 3 else 15
    with tempfile.TemporaryDirectory() as folder:
        picture, raw = Path(folder, "picture.iff"), Path(folder, "picture.rgb")
        picture.write_bytes(ilbm())
        raw.write_bytes(bytes(MARK) * (SIDE * SIDE))
        screen = Screen(folder)
        commands = {"vistrel": [vistrel, str(picture)], "bare": [bare, str(SIDE), str(SIDE), str(raw)]}
        places = {name: run(screen, command, None) for name, command in commands.items()}
        times = {name: [] for name in commands}
        for _ in range(runs):
            for name, command in commands.items():
                times[name].append(run(screen, command, places[name]))
        screen.server.terminate()
        screen.server.wait()
    for name, taken in times.items():
        print(f"{name:8} median {statistics.median(taken):7.1f} ms, {min(taken):.1f} to {max(taken):.1f}")
    print(f"ratio    {statistics.median(times['vistrel']) / statistics.median(times['bare']):7.2f}")


if __name__ == "__main__":
    main()
