#!/usr/bin/env python3
"""The program among other running copies of itself and in front of the desktop.

usage: dbus-run-session --config-file bus_without_services.conf -- desktop_test.py PROGRAM
Needs gdbus, xprop, and openbox for a window manager.
"""

import os
import subprocess
import time
import unittest

from program_case import DEADLINE, ODD_NAMES, PROGRAM, TITLE, ProgramTest, picture, wait_for


class DesktopTest(ProgramTest):
    def setUp(self):
        super().setUp()
        self.screen.environment["DBUS_SESSION_BUS_ADDRESS"] = os.environ["DBUS_SESSION_BUS_ADDRESS"]
        self.running = []
        self.addCleanup(self.end_all)

    def end_all(self):
        for program in self.running:
            program.kill()
            program.wait()

    def start(self, *words):
        self.running.append(subprocess.Popen([PROGRAM, *words], env=self.screen.environment))

    def started(self, name, *switches):
        """Starts a copy of its own and waits until it shows the file."""
        self.start(*switches, self.path(name, picture()))
        self.wait_for_file(name)

    def hand_over(self, *words, **variables):
        """Without a display, which whoever only hands over has no use for."""
        environment = {**self.screen.environment, **variables}
        environment.pop("DISPLAY")
        done = subprocess.run([PROGRAM, "-dde", *words], env=environment, cwd=self.folder.name, timeout=DEADLINE,
                              stderr=subprocess.PIPE)
        self.assertEqual((done.returncode, done.stderr), (0, b""))

    def call(self, method, *words):
        subprocess.run(["gdbus", "call", "--session", "--dest", "com.talvorine.Vistrel", "--object-path",
                        "/com/talvorine/Vistrel", "--method", "org.freedesktop." + method, *words],
                       check=True, stdout=subprocess.DEVNULL, timeout=DEADLINE)

    def test_files_arrive_in_order_and_after_a_question(self):
        self.started("first.iff")
        names = ODD_NAMES
        paths = [self.path(name, picture()) for name in names]
        self.hand_over(names[0], *paths[1:3], self.path("bad.iff", b"nothing"))
        box = wait_for(lambda: self.screen.windows(TITLE), "the refusal")[0]
        self.hand_over(paths[3])
        uris = ["file://" + self.path(name) for name in ("by%20bus.iff", "second.iff")]
        self.call("Application.Open", str(uris), "{}")
        self.path("by bus.iff", picture())
        self.path("second.iff", picture())
        wait_for(lambda: self.recent() == [names[2], names[1], names[0], b"first.iff"], "the recent files")
        self.screen.press(box, "Return")
        self.wait_for_file("second.iff")
        wait_for(lambda: self.recent()[:3] == [b"second.iff", b"by bus.iff", names[3]], "the recent files")
        self.assertEqual(self.screen.windows(TITLE), [])
        self.call("Application.Activate", "{}")
        self.call("DBus.Properties.GetAll", "org.freedesktop.Application")

    def test_the_next_copy_takes_over(self):
        self.started("first.iff", "-dde")
        self.started("second.iff", "-dde", "--tolerant")  # for itself, or the switch would be lost
        self.assertTrue(self.screen.windows(f"{TITLE} - first.iff"))
        self.running[0].kill()
        self.running[0].wait()
        self.hand_over(self.path("third.iff", picture()))
        self.wait_for_file("third.iff")
        self.assertEqual(self.screen.windows(f"{TITLE} - second.iff"), [])

    def test_comes_to_the_front_for_whoever_asked(self):
        self.manage_windows()
        self.started("first.iff")
        self.start(self.path("other.iff", picture()))  # waits in line for the name
        other = self.wait_for_file("other.iff")
        first = self.wait_for_file("first.iff")
        now = int(time.monotonic() * 1000)
        for token in (f"launcher-1_TIME{now}", "launcher-2_TIMEless", "launcher-3_TIME0"):
            self.screen.xdotool("windowactivate", "--sync", other)
            self.hand_over(DESKTOP_STARTUP_ID=token)
            wait_for(lambda: self.screen.xdotool("getactivewindow") == [first], "the program in front")
            said = subprocess.run(["xprop", "-id", first, "-notype", "_NET_STARTUP_ID", "_NET_WM_USER_TIME"],
                                  env=self.screen.environment, check=True, capture_output=True, text=True,
                                  timeout=DEADLINE).stdout
            self.assertRegex(said, f'^_NET_STARTUP_ID = "{token}"\n_NET_WM_USER_TIME = [1-9]')
        self.hand_over(self.path("bad.iff", b"nothing"))
        box = wait_for(lambda: self.screen.windows(TITLE), "the refusal")[0]
        self.screen.xdotool("windowactivate", "--sync", other)
        self.hand_over(self.path("waits.iff", picture()), DESKTOP_STARTUP_ID="launcher-4_TIME0")
        wait_for(lambda: self.screen.xdotool("getactivewindow") in ([first], [box]), "what the file waits for")


if __name__ == "__main__":
    unittest.main(verbosity=2)
