"""The program on a screen of its own, and pictures for it: what the tests with real keys and clicks share.

Needs Xvfb and xdotool. The screen is Xvfb's frame buffer file, so pixels are read, not photographed. Whoever
imports this is called with the program's path for its first argument.
"""

import os
import re
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import urllib.parse
from pathlib import Path

PROGRAM = os.path.abspath(sys.argv.pop(1))  # some start it in another folder
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

    def __init__(self, folder, size="1000x700"):
        self.folder = folder
        read_end, write_end = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", f"{size}x24", "-fbdir", folder, "-nolisten", "tcp",
             "-noreset"],  # or it would turn away whoever comes while it starts over for want of clients
            pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            self.display = ":" + pipe.readline().strip()
        self.environment = {**os.environ, **private_home(folder), "DISPLAY": self.display}
        self.environment.pop("QT_QPA_PLATFORM", None)
        self.environment.pop("WAYLAND_DISPLAY", None)
        self.environment["LC_ALL"] = "C.UTF-8"  # the toolkit's dialogs are known by their titles
        # In a build with sanitizers a fault of the program is no status of its own; what the bus library keeps
        # is none of it, nor what the C library does of a place for locales.
        suppressions = os.path.join(folder, "suppressions")
        Path(suppressions).write_text("leak:libdbus-1\nleak:__argz_add_sep\n")
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

    def place_of_window(self, window):
        """Left, top, width and height in pixels."""
        words = self.xdotool("getwindowgeometry", "--shell", window)
        place = dict(word.split("=") for word in words)
        return [int(place[name]) for name in ("X", "Y", "WIDTH", "HEIGHT")]

    def place_of(self, rows):
        """Where rows of pixels stand on the screen, from the left and from the top, or None."""
        screen = [bytearray(row) for row in self.rows()]
        for row in screen:
            row[3::4] = bytes(len(row) // 4)  # the byte that nobody sees
        for top, row in enumerate(screen[:len(screen) - len(rows) + 1]):
            left = row.find(rows[0])
            if left >= 0 and left % 4 == 0 and all(
                    screen[top + y][left:left + len(line)] == line for y, line in enumerate(rows)):
                return left // 4, top
        return None


def chunk(name, body):
    return name + struct.pack(">I", len(body)) + body + b"\0" * (len(body) % 2)


WIDTH, HEIGHT, PLANES = 48, 20, 5
COLOURS = [(8 * i + 3, 255 - 7 * i, (i * 37) % 256) for i in range(32)]


def value_at(x, y):
    return (x * 7 + y * 11 + x * y) % 32


def planes_of(values, width, planes):
    body = b""
    for start in range(0, len(values), width):
        for plane in range(planes):
            bits = "".join(str(value >> plane & 1) for value in values[start:start + width])
            body += int(bits, 2).to_bytes(width // 8, "big")
    return body


def form(values, width, height, before=b""):
    header = struct.pack(">HHhhBBBBHBBhh", width, height, 0, 0, PLANES, 0, 0, 0, 0, 1, 1, width, height)
    colours = b"".join(bytes(colour) for colour in COLOURS)
    return chunk(b"FORM", b"ILBM" + chunk(b"BMHD", header) + chunk(b"CMAP", colours) + before +
                 chunk(b"BODY", planes_of(values, width, PLANES)))


VALUES = [value_at(x, y) for y in range(HEIGHT) for x in range(WIDTH)]


def picture():
    return form(VALUES, WIDTH, HEIGHT)


def cut_picture():
    """Lacks the pad byte of a chunk at its end, which is passed over once the user has been asked."""
    body = picture()[8:] + struct.pack(">4sI3s", b"NOTE", 3, b"odd")
    return b"FORM" + struct.pack(">I", len(body)) + body


def in_colour(values):
    """Pixels as the screen has them."""
    return [bytes(reversed(COLOURS[value])) + b"\0" for value in values]


def in_rows(pixels, width):
    return [b"".join(pixels[start:start + width]) for start in range(0, len(pixels), width)]


# What a path, an address and a text can each be taken for.
ODD_NAMES = [b"a b.iff", b"100%41.iff", b"\xff\xfe.iff", b"last.iff"]


class ProgramTest(unittest.TestCase):
    def setUp(self):
        # What the program starts beside itself can still be writing there at the end.
        self.folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.addCleanup(self.folder.cleanup)
        self.screen = Screen(self.folder.name)
        self.addCleanup(self.screen.close)
        self.program = None
        self.addCleanup(self.end_program)

    def manage_windows(self):
        """Starts a window manager; a window that comes before it is up may never be shown."""
        managed = Path(self.folder.name, "managed")
        manager = subprocess.Popen(["openbox", "--startup", f"touch {managed}"], env=self.screen.environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.addCleanup(manager.wait)
        self.addCleanup(manager.kill)
        wait_for(managed.exists, "the window manager")

    def wait_for_window(self, title):
        """Waits until the window has the keyboard, which takes a window manager."""
        wait_for(lambda: " ".join(self.screen.xdotool("getactivewindow", "getwindowname")) == title, title)

    def wait_for_file(self, name):
        """Waits until a main window shows the file; its window."""
        return wait_for(lambda: self.screen.windows(f"{TITLE} - {name}"), name)[0]

    def settings(self):
        return Path(self.folder.name, "config", "Talvorine", "Internal", TITLE + ".ini")

    def recent(self):
        """The names of the recent files, as bytes."""
        file = self.settings()
        uris = re.findall("=file://(.*)", file.read_text()) if file.exists() else []
        return [os.path.basename(urllib.parse.unquote_to_bytes(uri)) for uri in uris]

    def end_program(self):
        if self.program:
            self.program.kill()
            self.program.wait()

    def path(self, name, content=None):
        """Of a file that can be written at once. The name may be bytes that are no text."""
        path = os.path.join(self.folder.name, os.fsdecode(name))
        if content is not None:
            Path(path).write_bytes(content)
        return path
