"""A settings file of its own, and the driver that keeps a list in it: what the tests of the settings share.

Whoever imports this is called with the driver's path for its first argument.
"""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

DRIVER = sys.argv.pop(1)
LIST_SIZE = 9
PATIENCE = 60  # seconds; whoever takes them hangs


class SettingsCase(unittest.TestCase):
    def setUp(self):
        home = tempfile.TemporaryDirectory()
        self.addCleanup(home.cleanup)
        self.environment = os.environ | {"XDG_CONFIG_HOME": home.name}
        self.folder = Path(home.name) / "Maker"
        self.folder.mkdir()
        self.file = self.folder / "Program.ini"

    def start(self, *arguments):
        return subprocess.Popen([DRIVER, *arguments], env=self.environment, stdout=subprocess.PIPE, text=True)

    def run_driver(self, *arguments):
        """The lines that the driver printed, and its status."""
        program = self.start(*arguments)
        try:
            lines = program.communicate(timeout=PATIENCE)[0].splitlines()
        finally:
            program.kill()
        return lines, program.returncode

    def read_list(self):
        paths, status = self.run_driver("list")
        self.assertEqual(status, 0)
        return paths

    def add_and_look(self, path):
        """The next writer finds everything in order, and so does whoever comes after it."""
        before = self.read_list()
        self.assertLessEqual(len(before), LIST_SIZE)
        self.assertEqual(self.run_driver("add", path), ([path], 0))
        self.assertEqual(self.read_list(), ([path] + before)[:LIST_SIZE])
        self.assertEqual({entry.name for entry in self.folder.iterdir()}, {".lock", self.file.name})
