#!/usr/bin/env python3
"""The program itself on a screen of its own: what it shows, what it refuses, how it ends.

usage: end_to_end_test.py PROGRAM
Needs Xvfb and xdotool. The screen is Xvfb's frame buffer file, so pixels are read, not photographed.
"""

import functools
import os
import re
import struct
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

PROGRAM = sys.argv.pop(1)
TITLE = "Talvorine Graphics File Viewer"
DEADLINE = 60  # seconds; only ends a test that would never end


def wait_for(condition, what):
    end = time.monotonic() + DEADLINE
    while time.monotonic() < end:
        found = condition()
        if found:
            return found
        time.sleep(0.02)
    raise AssertionError(f"waited in vain for {what}")


def private_home(folder):
    """What keeps the program's settings and registrations in the folder, and away from a session bus."""
    return {"XDG_CONFIG_HOME": os.path.join(folder, "config"), "XDG_DATA_HOME": os.path.join(folder, "data"),
            "DBUS_SESSION_BUS_ADDRESS": "disabled:"}


class Screen:
    """An X server without a window manager."""

    def __init__(self, folder):
        self.folder = folder
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1000x700x24", "-fbdir", folder, "-nolisten", "tcp",
             "-noreset"],  # or it would turn away whoever comes while it starts over for want of clients
            pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            self.display = ":" + pipe.readline().strip()
        self.environment = {**os.environ, **private_home(folder), "DISPLAY": self.display}
        self.environment.pop("QT_QPA_PLATFORM", None)
        self.environment.pop("WAYLAND_DISPLAY", None)
        # In a build with sanitizers a fault of the program is no status of its own; what the bus library keeps
        # is none of it.
        suppressions = os.path.join(folder, "suppressions")
        Path(suppressions).write_text("leak:libdbus-1\n")
        self.environment["ASAN_OPTIONS"] = "exitcode=99"
        self.environment["LSAN_OPTIONS"] = f"suppressions={suppressions}:print_suppressions=0"

    def close(self):
        self.server.terminate()
        self.server.wait()

    def xdotool(self, *words):
        done = subprocess.run(["xdotool", *words], env=self.environment, capture_output=True, text=True,
                              timeout=DEADLINE)
        return done.stdout.split()

    def windows(self, title):
        return self.xdotool("search", "--onlyvisible", "--name", "^" + re.escape(title) + "$")

    def press(self, window, key):
        self.xdotool("windowfocus", "--sync", window)
        self.xdotool("key", key)

    def rows(self):
        """The screen's rows, four bytes a pixel: blue, green, red, nothing."""
        data = Path(self.folder, "Xvfb_screen0").read_bytes()
        fields = struct.unpack(">25I", data[:100])
        width, height, pitch, colours = fields[4], fields[5], fields[12], fields[19]
        start = fields[0] + 12 * colours
        return [data[start + y * pitch:start + y * pitch + 4 * width] for y in range(height)]

    def box_pixels(self, window):
        words = self.xdotool("getwindowgeometry", "--shell", window)
        place = {key: int(value) for key, value in (word.split("=") for word in words)}
        rows = self.rows()[place["Y"]:place["Y"] + place["HEIGHT"]]
        return [row[4 * place["X"]:4 * (place["X"] + place["WIDTH"])] for row in rows]


def chunk(name, body):
    return name + struct.pack(">I", len(body)) + body + b"\0" * (len(body) % 2)


WIDTH, HEIGHT, PLANES = 48, 20, 5
COLOURS = [(8 * i + 3, 255 - 7 * i, (i * 37) % 256) for i in range(32)]


def value_at(x, y):
    return (x * 7 + y * 11 + x * y) % 32


def picture():
    body = b""
    for y in range(HEIGHT):
        for plane in range(PLANES):
            bits = "".join(str(value_at(x, y) >> plane & 1) for x in range(WIDTH))
            body += int(bits, 2).to_bytes(WIDTH // 8, "big")
    header = struct.pack(">HHhhBBBBHBBhh", WIDTH, HEIGHT, 0, 0, PLANES, 0, 0, 0, 0, 1, 1, WIDTH, HEIGHT)
    colours = b"".join(bytes(colour) for colour in COLOURS)
    return chunk(b"FORM", b"ILBM" + chunk(b"BMHD", header) + chunk(b"CMAP", colours) + chunk(b"BODY", body))


def shown_rows():
    def pixel(x, y):
        red, green, blue = COLOURS[value_at(x, y)]
        return bytes([blue, green, red])
    return [[pixel(x, y) for x in range(WIDTH)] for y in range(HEIGHT)]


def shows_picture(rows):
    """Whether all of the picture stands somewhere on the screen, pixel for pixel."""
    wanted = shown_rows()
    screen = [[row[i:i + 3] for i in range(0, len(row), 4)] for row in rows]
    for top, row in enumerate(screen[:len(screen) - HEIGHT + 1]):
        for left, pixel in enumerate(row):
            if pixel == wanted[0][0] and all(
                    screen[top + y][left:left + WIDTH] == wanted[y] for y in range(HEIGHT)):
                return True
    return False


class ProgramTest(unittest.TestCase):
    def setUp(self):
        # What the program starts beside itself can still be writing there at the end.
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.addCleanup(self.folder.cleanup)
        self.screen = Screen(self.folder.name)
        self.addCleanup(self.screen.close)
        self.program = None
        self.addCleanup(self.end_program)

    def end_program(self):
        if self.program:
            self.program.kill()
            self.program.wait()

    def path(self, name, content=None):
        path = os.path.join(self.folder.name, name)
        if content is not None:
            Path(path).write_bytes(content)
        return path


class EndToEndTest(ProgramTest):
    def start(self, *words):
        self.program = subprocess.Popen([PROGRAM, *words], env=self.screen.environment)

    def box(self):
        return wait_for(lambda: self.screen.windows(TITLE), "a message box")[0]

    def test_shows_the_picture(self):
        self.start(self.path("picture.iff", picture()))
        wait_for(lambda: self.screen.windows(TITLE + " - picture.iff"), "the main window")
        wait_for(lambda: shows_picture(self.screen.rows()), "the picture")

    def test_ends_with_its_screen(self):
        self.start(self.path("picture.iff", picture()))
        wait_for(lambda: shows_picture(self.screen.rows()), "the picture")
        self.screen.close()
        self.assertEqual(self.program.wait(DEADLINE), 1)

    def test_each_refusal_is_told_and_ends_with_status_1(self):
        os.mkdir(self.path("folder"))
        os.mkfifo(self.path("pipe"))
        shown = {}
        for name, content in {"text": b"This is no picture.\n", "text2": b"This is no picture.\n", "empty": b"",
                              "byte": b"F", "folder": None, "pipe": None, "missing": None}.items():
            with self.subTest(name):
                self.start(self.path(name, content))
                box = self.box()
                shown[name] = wait_for(lambda: self.settled(box), "the box to be drawn")
                self.screen.press(box, "Return")
                self.assertEqual(self.program.wait(DEADLINE), 1)
        self.assertNotEqual(shown["text"], shown["text2"], "the box does not name the file")

    def settled(self, box):
        """The box's pixels, once it has any and they no longer change."""
        pixels = self.screen.box_pixels(box)
        time.sleep(0.1)
        return pixels if len(set(pixels)) > 10 and pixels == self.screen.box_pixels(box) else None

    def test_one_file_of_two_is_enough(self):
        self.start(self.path("missing.iff"), self.path("picture.iff", picture()))
        self.screen.press(self.box(), "Return")
        wait_for(lambda: shows_picture(self.screen.rows()), "the picture")
        self.assertIsNone(self.program.poll())

    def test_a_path_is_its_bytes(self):
        Path(os.fsdecode(os.fsencode(self.folder.name) + b"/\xff\xfe%41.iff")).write_bytes(picture())
        self.start(os.fsencode(self.folder.name) + b"/\xff\xfe%41.iff")
        wait_for(lambda: shows_picture(self.screen.rows()), "the picture")


class WithoutScreenTest(unittest.TestCase):
    def setUp(self):
        self.home = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.addCleanup(self.home.cleanup)

    def run_program(self, *words, **variables):
        environment = {key: value for key, value in os.environ.items()
                       if key not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        return subprocess.run([PROGRAM, *words], env={**environment, **private_home(self.home.name), **variables},
                              capture_output=True, text=True, timeout=DEADLINE)

    def test_answers_that_need_none(self):
        for words, status, out, err in [(["--help"], 0, "usage:", ""), (["--version", "x.iff"], 0, "1.12", ""),
                                        (["--nonsense"], 2, "", "--nonsense")]:
            with self.subTest(words):
                done = self.run_program(*words)
                self.assertEqual(done.returncode, status)
                self.assertIn(out, done.stdout)
                self.assertEqual(bool(out), bool(done.stdout))
                self.assertIn(err, done.stderr)
                self.assertEqual(bool(err), bool(done.stderr))

    def test_prints_each_pixel_on_paper_of_96_units_an_inch(self):
        with tempfile.TemporaryDirectory() as folder:
            file, page = os.path.join(folder, "picture.iff"), os.path.join(folder, "page.pdf")
            Path(file).write_bytes(picture())
            done = self.run_program("-pt", file, page)
            self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))
            run = functools.partial(subprocess.run, check=True, stdout=subprocess.PIPE, text=True)
            width, height, *_, ppi, _, _, _ = run(["pdfimages", "-list", page]).stdout.splitlines()[2].split()[3:]
            self.assertEqual((int(width), int(height), ppi), (WIDTH, HEIGHT, "96"))
            run(["pdfimages", page, os.path.join(folder, "image")])
            pixels = Path(folder, "image-000.ppm").read_bytes()[-3 * WIDTH * HEIGHT:]
            self.assertEqual(pixels, b"".join(pixel[::-1] for row in shown_rows() for pixel in row))

            for words in [("-pt", file, "no such printer"), ("-p", file + ".missing"),
                          ("-pt", file, os.path.join(folder, "missing", "page.pdf"))]:
                with self.subTest(words):
                    done = self.run_program(*words)
                    self.assertEqual((done.returncode, done.stdout), (1, ""))
                    self.assertIn(TITLE, done.stderr)

    def test_says_in_one_line_that_there_is_none(self):
        for variables in [{}, {"DISPLAY": ":4711"}, {"QT_QPA_PLATFORM": "nonsense"}]:
            with self.subTest(variables):
                done = self.run_program("x.iff", **variables)
                self.assertEqual((done.returncode, done.stdout), (1, ""))
                self.assertRegex(done.stderr, r"\A[^\n]*display[^\n]*\n\Z")


if __name__ == "__main__":
    unittest.main(verbosity=2)
