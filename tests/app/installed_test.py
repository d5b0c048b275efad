#!/usr/bin/env python3
"""What is installed, started from the desktop: by the bus where that can, by its command line else.

usage: installed_test.py PROGRAM CMAKE BUILD
Needs gio, gdbus, update-mime-database and update-desktop-database.
"""

import os
import re
import signal
import subprocess
import sys
import unittest
from pathlib import Path

BUILD = sys.argv.pop()
CMAKE = sys.argv.pop()

# Takes the program's path off the words.
from program_case import DEADLINE, ODD_NAMES, TITLE, ProgramTest, picture, wait_for

ID = "com.talvorine.Vistrel"


class InstalledTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.usr = Path(self.path("usr"))
        subprocess.run([CMAKE, "--install", BUILD, "--prefix", self.usr], check=True, stdout=subprocess.DEVNULL)
        environment = self.screen.environment
        environment["HOME"] = self.folder.name
        environment["XDG_DATA_DIRS"] = f"{self.usr}/share:/usr/local/share:/usr/share"
        environment["PATH"] = f"{self.usr}/bin:{environment['PATH']}"
        share = self.usr / "share"
        self.run_tool("update-mime-database", share / "mime")
        self.run_tool("update-desktop-database", share / "applications")
        self.entry = share / "applications" / (ID + ".desktop")
        for name in ODD_NAMES:
            self.path(name, picture())
        self.path("bad.iff", b"This is no picture.\n")

    def start_bus(self, display=True):
        """What it starts has the environment that the bus has."""
        environment = dict(self.screen.environment)
        if not display:
            environment.pop("DISPLAY")
        bus = subprocess.Popen(["dbus-run-session", "--", "sh", "-c", 'echo "$DBUS_SESSION_BUS_ADDRESS"; exec cat'],
                               env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL)
        self.addCleanup(bus.communicate)
        self.screen.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        self.addCleanup(self.end_owner)

    def run_tool(self, *words):
        """What it starts can have its output, and go on after it."""
        subprocess.run(words, env=self.screen.environment, cwd=self.folder.name, check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=DEADLINE)

    def owner(self):
        """The process that has the program's name on the bus, or None."""
        method = "org.freedesktop.DBus.GetConnectionUnixProcessID"
        said = subprocess.run(["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus",
                               "--object-path", "/org/freedesktop/DBus", "--method", method, ID],
                              env=self.screen.environment, capture_output=True, text=True, timeout=DEADLINE).stdout
        return int(re.search(r"uint32 (\d+)", said)[1]) if said else None

    def end_owner(self):
        if process := self.owner():
            os.kill(process, signal.SIGTERM)
        wait_for(lambda: not self.owner(), "the end of the program")

    def answer_refusal(self):
        box = wait_for(lambda: list(filter(self.is_small, self.screen.windows(TITLE))), "the refusal")
        self.screen.press(box[0], "Return")

    def is_small(self, window):
        """As a box is; the main window without a file has the same title."""
        return self.screen.place_of_window(window)[2] < 700

    def open_all(self, tool, words):
        """First where nothing runs, then where it does. The words are those that the program was started with."""
        self.run_tool(*tool, ODD_NAMES[0])
        self.wait_for_file("a b.iff")
        first = self.owner()
        self.assertEqual(Path(f"/proc/{first}/cmdline").read_bytes().split(b"\0")[1:-1], words)
        self.run_tool(*tool, *ODD_NAMES[1:], "bad.iff")
        self.answer_refusal()
        # Each file can come by itself, in any order.
        wait_for(lambda: set(self.recent()) == set(ODD_NAMES), "the recent files")
        self.assertEqual(self.owner(), first)

    def test_by_the_bus(self):
        self.start_bus()
        self.open_all(["gio", "open"], [b"-dde"])

    def test_by_its_entry(self):
        """Whose command line asks the bus."""
        self.start_bus()
        self.open_all(["gio", "launch", self.entry], [b"-dde"])

    def test_by_its_command_line(self):
        """What the bus starts finds no display, and ends."""
        self.start_bus(display=False)
        self.open_all(["gio", "launch", self.entry], [b"-dde", os.fsencode(self.path("a b.iff"))])

    def test_without_a_file(self):
        """The bus, which starts the program so itself, is not asked."""
        self.start_bus()
        program = subprocess.Popen([self.usr / "bin/vistrel", "-dde"], env=self.screen.environment)
        self.assertEqual(wait_for(self.owner, "the program"), program.pid)
        self.end_owner()
        program.wait()


if __name__ == "__main__":
    unittest.main()
