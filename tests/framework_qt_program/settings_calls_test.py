#!/usr/bin/env python3
"""A writer of the settings is killed at each of its system calls, and each of them fails once.

usage: settings_calls_test.py SETTINGS_DRIVER

Needs strace: where it may not trace, or not this build, the status is 77.
"""

import os
import re
import subprocess
import sys
import tempfile
import unittest
from collections import Counter
from pathlib import Path

from settings_case import DRIVER, LIST_SIZE, PATIENCE, SettingsCase

MAY_NOT_TRACE = 77
KILLED = -9
NOT_OF_FILES = ("brk", "mmap", "munmap", "futex")  # only a broken system fails there


def trace(environment, *words):
    """The status, and the lines of the log."""
    with tempfile.NamedTemporaryFile("r", errors="replace") as log:
        done = subprocess.run(["strace", "-qq", "-o", log.name, *words], env=environment, timeout=PATIENCE,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        return done.returncode, log.readlines()


class SettingsCallsTest(SettingsCase):
    def setUp(self):
        super().setUp()
        self.run_driver("add", *(f"/first/{i}" for i in range(LIST_SIZE)))

    def add(self, path, *options):
        return trace(self.environment, *options, DRIVER, "add", path)

    def places(self):
        """Each call from when the lock is had, as its name and how many of them there were."""
        _, lines = self.add("/trial")
        names = [re.match(r"\w+", line)[0] for line in lines if "(" in line]
        seen = Counter()
        for name in names:
            seen[name] += 1
            if "flock" in seen and name not in ("flock", "exit_group"):
                yield name, seen[name]

    def sweep(self, action, places):
        """The statuses of writers that met with it at those places; the list is whole each time."""
        statuses = Counter()
        for name, place in places:
            with self.subTest(call=name, place=place, action=action):
                before = self.read_list()
                path = f"/{name}/{place}/{action}"
                status, _ = self.add(path, "-e", f"trace={name}", "-e", f"inject={name}:{action}:when={place}")
                statuses[status] += 1
                added = ([path] + before)[:LIST_SIZE]  # by whoever fails too, after the file is in its place
                self.assertIn(self.read_list(), [added] if status == 0 else [before, added])
                # Nothing of what was left makes the next one wait.
                self.assertEqual(self.add(f"{path}/next", "-e", "trace=nanosleep,clock_nanosleep,poll,ppoll"), (0, []))
                self.add_and_look(f"{path}/after")
        return statuses

    def test_killed_at_each_call(self):
        places = list(self.places())
        self.assertEqual(self.sweep("signal=KILL", places), {KILLED: len(places)})
        print(len(places), "kills")

    def test_where_there_are_no_locks_nobody_waits_for_one(self):
        before = self.read_list()
        status, lines = self.add("/unlocked", "-e", "trace=flock", "-e", "inject=flock:error=ENOLCK")
        self.assertEqual((status, len(lines)), (1, 1), lines)
        self.assertEqual(self.read_list(), before)

    def test_each_call_fails(self):
        places = [(name, place) for name, place in self.places() if name not in NOT_OF_FILES]
        for error in ("ENOSPC", "EIO"):
            statuses = self.sweep(f"error={error}", places)
            self.assertLessEqual(set(statuses), {0, 1})
            print(error, dict(statuses))


if __name__ == "__main__":
    if trace(os.environ, DRIVER, "list")[0] != 0:
        print("Tracing is not permitted here, or not of this build.")
        sys.exit(MAY_NOT_TRACE)
    unittest.main()
