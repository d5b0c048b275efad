#!/usr/bin/env python3
"""Walks through the program as a person takes them, with real keys and clicks.

usage: walk_test.py PROGRAM
Needs a window manager: openbox.
"""

import os
import struct
import subprocess
import time
import unittest
from pathlib import Path

from program_case import (DEADLINE, HEIGHT, PROGRAM, TITLE, VALUES, WIDTH, ProgramTest, chunk, form, in_colour, in_rows,
                          picture, planes_of, value_at, wait_for)

BAR = "Layers & Channels"
AWAY = ("mousemove", "1", "1")  # the pointer hides what is under it

LEVEL = [value_at(x + 5, y + 3) for y in range(HEIGHT // 2) for x in range(WIDTH // 2)]
ALPHA = [255 - 3 * value for value in VALUES]


def document():
    """A picture with an alpha picture, and one mip-map level."""
    alph = chunk(b"ALPH", struct.pack(">HHBB", WIDTH, HEIGHT, 8, 0) + planes_of(ALPHA, WIDTH, 8))
    return chunk(b"LIST", b"ILBM" + form(VALUES, WIDTH, HEIGHT, alph) + chunk(b"FORM", b"MIPM" + chunk(b"CONT", b"\1\0")) +
                 chunk(b"LIST", b"ILBM" + form(LEVEL, WIDTH // 2, HEIGHT // 2)))


def stretched(pixels, width, to_width, to_height):
    """Rows of a picture stretched to another size, nearest neighbour."""
    height = len(pixels) // width
    return in_rows([pixels[y * height // to_height * width + x * width // to_width]
                    for y in range(to_height) for x in range(to_width)], to_width)


class WalkTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.screen.environment["HOME"] = self.folder.name
        self.screen.environment["XDG_RUNTIME_DIR"] = self.folder.name
        self.manage_windows()
        self.said = Path(self.path("said"))
        with self.said.open("wb") as said:
            self.program = subprocess.Popen([PROGRAM], env=self.screen.environment, cwd=self.folder.name, stderr=said)
        self.wait_for_window(TITLE)

    def keys(self, *keys):
        for key in keys:
            self.screen.xdotool("key", "--clearmodifiers", key)

    def command(self, menu, item):
        """Opens a menu with its mnemonic and takes one of its items."""
        self.keys("alt+" + menu, item)

    def answer(self, title, text):
        self.wait_for_window(title)
        self.screen.xdotool("type", text)
        self.keys("Return")
        wait_for(lambda: not self.screen.windows(title), f"the end of {title}")

    def double_click(self, x, y):
        self.screen.xdotool("mousemove", str(x), str(y), "click", "--repeat", "2", "1", *AWAY)

    def drag(self, start, end):
        """In steps, as a hand does."""
        words = ["mousemove", *map(str, start), "mousedown", "1"]
        for step in range(1, 11):
            words += ["mousemove", *(str(a + (b - a) * step // 10) for a, b in zip(start, end)), "sleep", "0.02"]
        self.screen.xdotool(*words, "mouseup", "1", *AWAY)

    def floating_caption(self):
        floating = wait_for(lambda: self.screen.windows(BAR), "the bar to float")[0]
        left, top, _, _ = self.screen.place_of_window(floating)
        return left + 40, top + 10

    def wait_for_picture(self, pixels, width, scale=1.0):
        height = len(pixels) // width
        rows = stretched(pixels, width, int(width * scale), int(height * scale))
        return wait_for(lambda: self.screen.place_of(rows), f"the picture at {scale}")

    def lock_pane(self, key):
        """The columns of the status bar in which the name of a locking key shows; it is opened again."""
        left, top, width, height = self.screen.place_of_window(self.screen.xdotool("getactivewindow")[0])
        right, bottom = left + width, top + height

        def corner():
            """Where it is dark, as text is and the frame around it is not."""
            rows = [row[4 * (right - 150):4 * right] for row in self.screen.rows()[bottom - 60:bottom]]
            return {(x // 4, y) for y, row in enumerate(rows) for x in range(0, len(row), 4) if max(row[x:x + 3]) < 64}

        before = corner()
        self.screen.xdotool("key", key)
        columns = [x for x, _ in wait_for(lambda: corner() - before, f"{key} to show")]
        self.screen.xdotool("key", key)
        wait_for(lambda: corner() == before, f"{key} to show no longer")
        return range(min(columns), max(columns) + 1)

    def pane(self):
        """The pixels of the message pane."""
        left, top, _, height = self.screen.place_of_window(self.main)
        return [row[4 * left:4 * (left + 400)] for row in self.screen.rows()[top + height - 60:top + height]]

    def settled_pane(self):
        """Not while it is being drawn."""
        def settled():
            pane = self.pane()
            time.sleep(0.1)
            return pane if pane == self.pane() else None
        return wait_for(settled, "the pane to be drawn")

    def test_at_hand(self):
        path = self.path("1.iff", picture())
        self.path("2.iff", b"noise")
        self.path("10.iff", form(LEVEL, WIDTH // 2, HEIGHT // 2))
        self.main = self.screen.xdotool("getactivewindow")[0]
        self.keys("ctrl+o")
        self.answer("Open", path)
        self.screen.xdotool(*AWAY)
        whole = in_colour(VALUES)
        place = self.wait_for_picture(whole, WIDTH)
        ready = self.settled_pane()

        self.screen.xdotool("mousemove", str(place[0] + 12), str(place[1] + 10))
        wait_for(lambda: self.pane() != ready, "the pixel under the pointer")
        self.screen.xdotool(*AWAY)
        wait_for(lambda: self.pane() == ready, "the pane as it was")

        for key, scale in [("ctrl+plus", 2.0), ("ctrl+plus", 4.0), ("ctrl+0", 1.0), ("ctrl+minus", 0.5),
                           ("ctrl+0", 1.0)]:
            self.keys(key)
            self.wait_for_picture(whole, WIDTH, scale)

        # As programs do that save.
        others = [31 - value for value in VALUES]
        os.replace(self.path("new", form(others, WIDTH, HEIGHT)), path)
        wait_for(lambda: self.pane() != ready, "the pane to say that the file has changed")
        self.wait_for_picture(whole, WIDTH)
        self.keys("F5")
        self.wait_for_picture(in_colour(others), WIDTH)
        wait_for(lambda: self.pane() == ready, "the pane as it was")

        self.keys("ctrl+Next")
        self.wait_for_window(f"{TITLE} - 10.iff")
        self.wait_for_picture(in_colour(LEVEL), WIDTH // 2)
        self.keys("ctrl+Prior")
        self.wait_for_window(f"{TITLE} - 1.iff")
        place = self.wait_for_picture(in_colour(others), WIDTH)

        # The menu of the view: the right button, and the key with its mnemonics.
        self.screen.xdotool("mousemove", str(place[0] + 5), str(place[1] + 5), "click", "3")
        self.keys("i")
        self.screen.xdotool(*AWAY)
        self.wait_for_picture(in_colour(others), WIDTH, 2.0)
        self.keys("Menu", "n")
        self.wait_for_window(f"{TITLE} - 10.iff")
        self.keys("ctrl+Prior")
        self.wait_for_window(f"{TITLE} - 1.iff")

        # Under the wheel the pixel stays, once the area has room for that; what is held follows the hand.
        self.keys("ctrl+plus", "ctrl+plus", "ctrl+plus")
        place = self.wait_for_picture(in_colour(others), WIDTH, 8.0)
        self.keys("ctrl+plus")
        shown = in_colour(others)[4 * WIDTH + 8][:3]

        def shows(left, top, size):
            """Whether the pixel stands there, as far as its corners tell."""
            rows = self.screen.rows()
            return all(rows[y][4 * x:4 * x + 3] == shown
                       for y in (top, top + size - 1) for x in (left, left + size - 1))

        left, top = place[0] + 8 * 16, place[1] + 4 * 16
        wait_for(lambda: shows(left, top, 16), "the picture at 16")
        self.screen.xdotool("mousemove", str(left + 8), str(top + 8), "keydown", "ctrl", "click", "4", "keyup", "ctrl",
                            *AWAY)
        left, top = left - 9, top - 9  # the middle of a pixel has one half on each side
        wait_for(lambda: shows(left, top, 32), "the pixel under the pointer")
        self.drag((left, top), (left - 90, top - 30))
        wait_for(lambda: shows(left - 90, top - 30, 32), "the picture to follow the hand")

        self.command("f", "x")
        self.assertEqual(self.program.wait(timeout=DEADLINE), 0)

    def test_walk(self):
        whole, level, alpha = in_colour(VALUES), in_colour(LEVEL), [bytes([a, a, a, 0]) for a in ALPHA]
        self.keys("ctrl+o")
        self.answer("Open", self.path("chain.iff", document()))
        self.wait_for_window(f"{TITLE} - chain.iff")
        self.wait_for_picture(whole, WIDTH)

        # From one list to the view, and to the other list; where that has room, it keeps the keyboard.
        self.keys("alt+c", "Down")
        self.wait_for_picture(alpha, WIDTH)
        self.keys("F6", "F6", "Down")
        self.wait_for_picture(level, WIDTH // 2, 2.0)
        self.keys("alt+minus", "x")
        self.wait_for_window(f"{TITLE} - [chain.iff]")
        self.keys("alt+l", "alt+minus", "r")
        self.wait_for_window(f"{TITLE} - chain.iff")
        self.keys("Up")
        self.wait_for_picture(whole, WIDTH)

        caps, num = self.lock_pane("Caps_Lock"), self.lock_pane("Num_Lock")
        self.assertLess(max(caps), min(num))

        self.command("w", "z")
        self.wait_for_window("Zoom")
        self.screen.xdotool("type", "abc")
        self.keys("Return")
        self.wait_for_window(TITLE)  # the refusal, in front of the dialog
        self.keys("Return", "Escape")
        for scale in ("2", "1"):
            self.command("w", "z")
            self.answer("Zoom", scale)  # in place of what stood there
            place = self.wait_for_picture(whole, WIDTH, float(scale))

        # The bar's grip stands at its left end, above the picture; a floating bar has a caption.
        self.drag((place[0] + 3, place[1] - 20), (place[0] + 300, place[1] + 200))
        self.double_click(*self.floating_caption())
        wait_for(lambda: not self.screen.windows(BAR), "the bar to dock")
        self.wait_for_picture(whole, WIDTH)

        self.command("w", "n")
        self.wait_for_window(f"{TITLE} - chain.iff:2")
        for key, number in (("ctrl+Tab", 1), ("ctrl+shift+Tab", 2), ("ctrl+F6", 1), ("ctrl+shift+F6", 2)):
            self.keys(key)
            self.wait_for_window(f"{TITLE} - chain.iff:{number}")

        self.command("f", "v")
        self.wait_for_window("Print Preview: chain.iff")
        self.keys("Escape")
        self.wait_for_window(f"{TITLE} - chain.iff:2")
        self.command("f", "r")
        self.answer("Page Setup", "")
        self.keys("ctrl+p")
        self.wait_for_window("Print")
        self.keys("Return")
        printed = Path(self.folder.name)
        wait_for(lambda: any(file.read_bytes().startswith(b"%PDF") for file in printed.glob("*.pdf")), "the printed page")
        self.wait_for_window(f"{TITLE} - chain.iff:2")
        self.keys("ctrl+F4")
        self.wait_for_window(f"{TITLE} - chain.iff")
        self.keys("ctrl+F4")
        self.wait_for_window(TITLE)
        self.command("f", "1")
        self.wait_for_window(f"{TITLE} - chain.iff")

        self.command("h", "a")
        self.answer("About Vistrel", "")
        self.wait_for_window(f"{TITLE} - chain.iff")
        self.command("f", "x")
        self.assertEqual(self.program.wait(timeout=DEADLINE), 0)
        self.assertEqual(self.said.read_text(), "")


if __name__ == "__main__":
    unittest.main()
