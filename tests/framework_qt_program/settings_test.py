#!/usr/bin/env python3
"""The settings file among programs that are killed, that write at once, and that find strange contents in it.

usage: settings_test.py SETTINGS_DRIVER

With VISTREL_LONG in the environment ten times as many programs are killed and rounds are run.
"""

import configparser
import os
import random
import subprocess
import unittest

from settings_case import LIST_SIZE, PATIENCE, SettingsCase

LONG = 10 if "VISTREL_LONG" in os.environ else 1


class SettingsTest(SettingsCase):
    def test_killed_writers(self):
        times = random.Random(14)
        self.run_driver("add", *(f"/first/{i}" for i in range(LIST_SIZE)))
        self.assertEqual(len(self.read_list()), LIST_SIZE)
        for kill in range(100 * LONG):
            with self.subTest(kill=kill):
                paths = [f"/{kill}/{i}" for i in range(1000)]
                before = self.read_list()
                writer = self.start("add", *paths)
                try:
                    writer.communicate(timeout=times.uniform(0, 0.1))
                except subprocess.TimeoutExpired:
                    writer.kill()
                written = writer.communicate()[0].splitlines()
                # What was reported stands there; of the one under way, all or nothing.
                after = [(paths[:n][::-1] + before)[:LIST_SIZE] for n in (len(written), len(written) + 1)]
                self.assertIn(self.read_list(), after)
                ini = configparser.RawConfigParser()
                ini.read(self.file)
                self.assertEqual(len(ini["Recent%20File%20List"]), LIST_SIZE)
                self.add_and_look(f"/after/{kill}")

    def test_strange_contents(self):
        noise = random.Random(15).randbytes(1 << 20)
        entries = "".join(f"File{i}=file:///{i}\n" for i in range(1, 10001))
        # A list that says it has 4,294,967,295 elements, as the toolkit writes values that are no texts.
        believed = r"a=@Variant(\0\0\0\t\xff\xff\xff\xff)"
        for name, contents in (
            ("noise", noise),
            ("noise in the list", b"[Recent%20File%20List]\n" + noise),
            ("many entries", b"[Recent%20File%20List]\n" + entries.encode()),
            ("many sections", b"".join(b"[%d]\na=b\n" % i for i in range(10000))),
            ("a long list that is none", b"[Other]\n" + believed.encode()),
        ):
            with self.subTest(name):
                self.file.write_bytes(contents)
                for path in ("/a", "/b"):
                    self.add_and_look(path)
                # Once written by the program it grows no more.
                size = self.file.stat().st_size
                self.add_and_look("/c")
                self.assertLess(self.file.stat().st_size, size + 100)
        self.file.unlink()
        for make, remove in ((os.mkdir, os.rmdir), (os.mkfifo, os.unlink)):
            make(self.file)
            self.assertEqual(self.read_list(), [])
            self.assertEqual(self.run_driver("add", "/a"), ([], 1))
            remove(self.file)
        self.add_and_look("/a")

    def test_writers_at_once(self):
        for round_number in range(10 * LONG):
            paths = {f"/{round_number}/{i}" for i in range(8)}
            writers = [self.start("add", path) for path in paths]
            for writer in writers:
                writer.communicate(timeout=PATIENCE)
                self.assertEqual(writer.returncode, 0)
            self.assertEqual(set(self.read_list()[:8]), paths)
        self.add_and_look("/after")


if __name__ == "__main__":
    unittest.main()
