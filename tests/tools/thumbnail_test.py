#!/usr/bin/env python3
"""Tries `vistrel-export --thumbnail` on samples, on damaged ones, and on files that take over their reader.

usage: thumbnail_test.py EXPORT ESCAPE [TEST...]

EXPORT is the program, ESCAPE the library that is preloaded in place of such a file. 100 damaged samples are tried,
and 1,000 of another seed with VISTREL_LONG.
"""

import os
import random
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

from damaged_copies import damaged

SAMPLES = Path(__file__).resolve().parents[2] / "samples"
LONG = bool(os.environ.get("VISTREL_LONG"))
DAMAGED, SEED = (1000, 2) if LONG else (100, 1)
SIDES = {"lantern.psd": (240, 180), "evening.iff": (320, 200), "ball.iff": (160, 160), "marble.tmg": (256, 256)}
EXPORT = ESCAPE = None  # programs, of the command line


def chunks(png):
    """Pairs of id and data of a PNG, which ends with its last chunk."""
    at, found = 8, []
    while at < len(png):
        size, = struct.unpack(">I", png[at:at + 4])
        found.append((png[at + 4:at + 8], png[at + 8:at + 8 + size]))
        at += size + 12
    return found


class ThumbnailTest(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = Path(holder.name)
        self.output = self.folder / "output.png"

    def run_on(self, file, *switches, size="128", **variables):
        return subprocess.run([EXPORT, "--thumbnail", size, file, self.output, *switches], capture_output=True,
                              text=True, cwd=self.folder, stdin=subprocess.DEVNULL, check=False,
                              env={**os.environ, **variables})

    def left(self):
        return sorted(path.name for path in self.folder.iterdir())

    def test_sizes(self):
        for name, sides in SIDES.items():
            for most in (1, 64, 4096):
                with self.subTest(name=name, most=most):
                    self.output.write_bytes(b"to be replaced")
                    done = self.run_on(SAMPLES / name, size=str(most))
                    self.assertEqual(done.returncode, 0, done.stderr)
                    found = chunks(self.output.read_bytes())
                    width, height = struct.unpack(">2I", found[0][1][:8])
                    self.assertEqual(max(width, height), min(most, max(sides)))
                    texts = dict(data.split(b"\0") for kind, data in found if kind == b"tEXt")
                    self.assertEqual(texts, {b"Thumb::Image::Width": b"%d" % sides[0],
                                             b"Thumb::Image::Height": b"%d" % sides[1]})
                    self.assertEqual(found[-1], (b"IEND", b""))
                    self.assertEqual(self.left(), ["output.png"])

    def test_failures_leave_what_was_there(self):
        self.output.write_bytes(b"as it was")
        refused = self.folder / "refused.psd"
        refused.write_bytes(b"8BPS")
        for file, reason in ((refused, "refused"), (self.folder, "folder"), (self.folder / "none", "No such file")):
            done = self.run_on(file)
            self.assertEqual(done.returncode, 1)
            self.assertIn(reason, done.stderr)
        self.assertEqual(self.left(), ["output.png", "refused.psd"])
        self.assertEqual(self.output.read_bytes(), b"as it was")

    def test_the_file_itself_is_not_replaced(self):
        data = (SAMPLES / "ball.iff").read_bytes()
        self.output.write_bytes(data)
        os.link(self.output, self.folder / "other name")
        for name in ("output.png", "other name"):
            done = self.run_on(self.folder / name)
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertIn("take its place", done.stderr)
        self.assertEqual(self.output.read_bytes(), data)

    def test_strict(self):
        file = self.folder / "file"
        data = (SAMPLES / "ball.iff").read_bytes()
        # Of an odd length, with no pad byte after it.
        file.write_bytes(data[:4] + struct.pack(">I", len(data) + 1) + data[8:] + b"JUNK\0\0\0\1\0")
        self.assertEqual(self.run_on(file).returncode, 0)
        self.assertEqual(self.run_on(file, "--strict").returncode, 1)

    def test_escapes(self):
        calls = ("open", "create", "rename", "stat", "socket", "fork", "exec", "thread", "code", "output", "other input",
                 "kill")
        ends = {**dict.fromkeys(calls, "Bad system call"), "memory": "", "much output": "File size limit exceeded"}
        if LONG:
            ends["time"] = "takes more than 10 seconds"
        for what, text in ends.items():
            with self.subTest(what=what):
                done = self.run_on(SAMPLES / "ball.iff", LD_PRELOAD=ESCAPE, VISTREL_ESCAPE=what)
                self.assertEqual(done.returncode, 1, done.stderr)
                self.assertIn(text, done.stderr)
                self.assertNotIn("was possible", done.stderr)
                self.assertEqual(self.left(), [])
        done = self.run_on(SAMPLES / "ball.iff", LD_PRELOAD=ESCAPE, VISTREL_ESCAPE="nothing")
        self.assertEqual((done.returncode, done.stderr), (0, "nothing was possible\n"))

    def test_damaged_samples(self):
        chance = random.Random(SEED)
        samples = [path.read_bytes() for path in sorted(SAMPLES.iterdir())]
        file = self.folder / "damaged"
        good = 0
        for number in range(DAMAGED):
            file.write_bytes(damaged(samples[number % len(samples)], chance))
            self.output.unlink(missing_ok=True)
            done = self.run_on(file)
            self.assertIn(done.returncode, (0, 1), f"damaged sample {number}")
            self.assertNotIn("ended", done.stderr, f"damaged sample {number}")
            self.assertEqual(self.output.exists(), done.returncode == 0)
            good += done.returncode == 0
        # Damage that every reader or none gets past tries little.
        self.assertGreater(good, DAMAGED // 10)
        self.assertLess(good, DAMAGED)


if __name__ == "__main__":
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    EXPORT, ESCAPE = (os.path.abspath(path) for path in sys.argv[1:3])
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
