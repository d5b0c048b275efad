#!/usr/bin/env python3
"""The program itself on a screen of its own: what it shows, what it refuses, how it ends.

usage: end_to_end_test.py PROGRAM
"""

import functools
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from program_case import (COLOURS, DEADLINE, HEIGHT, PROGRAM, TITLE, VALUES, WIDTH, ProgramTest, chunk, cut_picture,
                          in_colour, in_rows, picture, private_home, wait_for)


class EndToEndTest(ProgramTest):
    def start(self, *words):
        self.program = subprocess.Popen([PROGRAM, *words], env=self.screen.environment)

    def wait_for_picture(self):
        wait_for(lambda: self.screen.place_of(in_rows(in_colour(VALUES), WIDTH)), "the picture")

    def box(self):
        return wait_for(lambda: self.screen.windows(TITLE), "a message box")[0]

    def test_one_file_of_two_is_enough_and_a_path_is_its_bytes(self):
        self.start(self.path("missing.iff"), self.path(b"\xff\xfe%41.iff", picture()))
        self.screen.press(self.box(), "Return")
        self.wait_for_picture()

    def test_ends_with_its_screen(self):
        self.start(self.path("picture.iff", picture()))
        self.wait_for_picture()
        self.screen.close()
        self.assertEqual(self.program.wait(DEADLINE), 1)

    def test_ends_with_status_1_where_its_one_file_does_not_open(self):
        for content, key in ((b"This is no picture.\n", "Return"), (cut_picture(), "alt+n")):
            with self.subTest(key):
                self.start(self.path("file.iff", content))
                self.screen.press(self.box(), key)
                self.assertEqual(self.program.wait(DEADLINE), 1)


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
        for words, status, out, err in [(["--help"], 0, "usage: .*", ""), (["--version", "x.iff"], 0, TITLE + " 1.12\n", ""),
                                        *((words, 2, "", f"[^\n]*switch {words[0]} [^\n]*\n")
                                          for words in (["--nonsense", "x.iff"], ["-p"], ["-pt", "x.iff"]))]:
            with self.subTest(words):
                done = self.run_program(*words)
                self.assertEqual(done.returncode, status)
                self.assertRegex(done.stdout, f"(?s)^{out}$")
                self.assertRegex(done.stderr, f"(?s)^{err}$")

    def test_a_page_is_printed_without_asking(self):
        with tempfile.TemporaryDirectory() as folder:
            file, page = os.path.join(folder, "cut.iff"), os.path.join(folder, "page.pdf")
            Path(file).write_bytes(cut_picture())
            done = self.run_program("-pt", file, page)
            self.assertEqual((done.returncode, os.path.exists(page)), (1, False))
            self.assertIn("It could be read tolerantly (Reading/Tolerant, or --tolerant).", done.stderr)
            done = self.run_program("--tolerant", "-pt", file, page)
            self.assertEqual((done.returncode, done.stderr, os.path.exists(page)), (0, "", True))

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
            self.assertEqual(pixels, b"".join(bytes(COLOURS[value]) for value in VALUES))

            empty, no_page = os.path.join(folder, "empty.iff"), os.path.join(folder, "empty.pdf")
            Path(empty).write_bytes(chunk(b"FORM", b"ILBM" + picture()[12:40]))  # nothing after the header
            for words in [("-pt", file, "no such printer"), ("-p", file + ".missing"), ("-pt", empty, no_page),
                          ("-pt", file, os.path.join(folder, "missing", "page.pdf"))]:
                done = self.run_program(*words)
                self.assertEqual((done.returncode, done.stdout), (1, ""))
                self.assertTrue(done.stderr.startswith(TITLE), done.stderr)
            self.assertFalse(os.path.exists(no_page))

    def test_says_in_one_line_that_there_is_none(self):
        for variables in [{}, {"DISPLAY": ":4711"}, {"QT_QPA_PLATFORM": "nonsense"}]:
            with self.subTest(variables):
                done = self.run_program("x.iff", **variables)
                self.assertEqual((done.returncode, done.stdout), (1, ""))
                self.assertRegex(done.stderr, r"\A[^\n]*display[^\n]*\n\Z")


if __name__ == "__main__":
    unittest.main(verbosity=2)
