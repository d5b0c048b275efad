#!/usr/bin/env python3
"""The program asked to end by a signal, whatever is up on its screen.

usage: signals_test.py PROGRAM
Needs a window manager, openbox, and the toolkit's theme for GTK.
"""

import signal
import subprocess
import unittest
from pathlib import Path

from program_case import DEADLINE, PROGRAM, TITLE, ProgramTest, cut_picture, picture

SIGNALS = (signal.SIGINT, signal.SIGTERM, signal.SIGHUP)


class SignalsTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.manage_windows()

    def start(self, *words, ignored=None):
        def dispose():
            """Whoever runs the test may ignore what it is about."""
            for number in SIGNALS:
                signal.signal(number, signal.SIG_IGN if number == ignored else signal.SIG_DFL)

        self.program = subprocess.Popen([PROGRAM, *words], env=self.screen.environment, preexec_fn=dispose,
                                        stderr=subprocess.PIPE)

    def wait_for_end(self, number):
        _, said = self.program.communicate(timeout=DEADLINE)
        self.assertEqual((self.program.returncode, said), (128 + number, b""))

    def test_ends_whatever_is_up(self):
        good, frame = self.path("good.iff", picture()), f"{TITLE} - good.iff"
        missing, cut = self.path("missing.iff"), self.path("cut.iff", cut_picture())
        for words, keys, up in [([], [], frame),
                                ([missing], [], TITLE),  # a message
                                ([cut], [], TITLE),  # a question
                                ([], ["alt+w"], frame),  # a menu
                                ([], ["alt+w", "z"], "Zoom"),
                                ([], ["ctrl+o"], "Open"),
                                ([], ["ctrl+p"], "Print"),
                                ([], ["alt+f", "v"], "Print Preview: good.iff"),
                                ([], ["alt+f", "r"], "Page Setup"),
                                ([], ["alt+h", "a"], "About Vistrel")]:
            for number in SIGNALS:
                with self.subTest(words=words, keys=keys, signal=number.name):
                    self.settings().unlink(missing_ok=True)
                    self.start(good, *words)
                    if not words:
                        self.wait_for_window(frame)
                    for key in keys:
                        self.screen.xdotool("key", key)
                    self.wait_for_window(up)
                    self.program.send_signal(number)
                    self.wait_for_end(number)
                    self.assertEqual(self.recent(), [b"good.iff"])

    def test_ends_under_a_dialog_of_the_desktops_own(self):
        """It waits in a loop of the desktop's."""
        self.screen.environment.update(QT_QPA_PLATFORMTHEME="gtk3", GSETTINGS_BACKEND="memory", NO_AT_BRIDGE="1",
                                       HOME=self.folder.name, XDG_RUNTIME_DIR=self.folder.name)
        self.screen.environment["ASAN_OPTIONS"] += ":detect_leaks=0"  # GTK keeps what it has until the end
        self.start(self.path("good.iff", picture()))
        self.wait_for_window(f"{TITLE} - good.iff")
        self.screen.xdotool("key", "ctrl+o")
        self.wait_for_window("Open")
        self.assertIn("/libgtk-3", Path(f"/proc/{self.program.pid}/maps").read_text())
        self.program.send_signal(signal.SIGTERM)
        self.wait_for_end(signal.SIGTERM)

    def test_one_that_was_ignored_before_it_stays_ignored(self):
        self.start(self.path("good.iff", picture()), ignored=signal.SIGHUP)
        self.wait_for_window(f"{TITLE} - good.iff")
        self.program.send_signal(signal.SIGHUP)
        self.screen.xdotool("key", "ctrl+o")
        self.wait_for_window("Open")
        self.program.send_signal(signal.SIGTERM)
        self.wait_for_end(signal.SIGTERM)


if __name__ == "__main__":
    unittest.main()
