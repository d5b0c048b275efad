#!/usr/bin/env python3
"""The program on a machine that has little for it: a home that cannot be written, one font, no bus and no printer.

usage: bare_machine_test.py PROGRAM
Needs localedef with its sources, and the toolkit's translations. Where nobody may mount, the status is 77.
"""

import glob
import os
import shutil
import subprocess
import sys
import unittest

from program_case import DEADLINE, PROGRAM, VALUES, WIDTH, ProgramTest, in_colour, in_rows, picture, wait_for

MAY_NOT_MOUNT = 77
FONTS = "/usr/share/fonts/**/DejaVuSans.ttf"
READ_ONLY = ["unshare", "--mount", "--map-root-user", "sh", "-ec", """
    mount --bind "$HOME" "$HOME"
    mount -o remount,bind,ro "$HOME"
    cd "$HOME"
    exec "$@" """, "sh"]


class BareMachineTest(ProgramTest):
    def setUp(self):
        super().setUp()
        for folder in ("home", "font", "runtime"):
            os.mkdir(self.path(folder), 0o700)
        shutil.copy(glob.glob(FONTS, recursive=True)[0], self.path("font"))
        self.path("fonts.conf", f"<fontconfig><dir>{self.path('font')}</dir></fontconfig>".encode())
        subprocess.run(["localedef", "-i", "de_DE", "-f", "UTF-8", self.path("de_DE.UTF-8")], check=True)
        environment = self.screen.environment
        for variable in ("LANG", "LANGUAGE", "LC_ALL", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
            environment.pop(variable, None)
        environment.update(HOME=self.path("home"), LOCPATH=self.folder.name, XDG_RUNTIME_DIR=self.path("runtime"),
                           FONTCONFIG_FILE=self.path("fonts.conf"), CUPS_SERVER=self.path("no printers"))

    def test_shows_a_picture_and_the_toolkits_dialogs_speak_the_users_language(self):
        self.path("home/sample.iff", picture())
        for language, caption in [("C", "Print"), ("de_DE.UTF-8", "Drucken")]:
            with self.subTest(language):
                self.screen.environment["LANG"] = language
                self.program = subprocess.Popen([*READ_ONLY, PROGRAM, "sample.iff"], env=self.screen.environment,
                                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
                frame = self.wait_for_file("sample.iff")
                wait_for(lambda: self.screen.place_of(in_rows(in_colour(VALUES), WIDTH)), "the picture")
                self.screen.press(frame, "ctrl+p")
                self.screen.press(wait_for(lambda: self.screen.windows(caption), caption)[0], "Escape")
                wait_for(lambda: not self.screen.windows(caption), f"the end of {caption}")
                self.screen.press(frame, "alt+f")
                self.screen.xdotool("key", "x")
                said, _ = self.program.communicate(timeout=DEADLINE)
                self.assertEqual((self.program.returncode, said), (0, b""))
                self.assertEqual(os.listdir(self.path("home")), ["sample.iff"])


if __name__ == "__main__":
    if subprocess.run([*READ_ONLY, "true"], stderr=subprocess.DEVNULL).returncode != 0:
        print("mounting is not permitted here")
        sys.exit(MAY_NOT_MOUNT)
    unittest.main()
