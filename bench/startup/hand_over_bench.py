#!/usr/bin/env python3
"""From the start of a copy that hands a file over to its end, beside a program that has it.

usage: dbus-run-session -- hand_over_bench.py VISTREL PICTURE [RUNS]

Prints the milliseconds. Without a display: the copy has no use for one, and the program that runs draws in memory.
"""

import os
import statistics
import subprocess
import sys
import tempfile
import time

NAME = "com.talvorine.Vistrel"


def has_owner():
    said = subprocess.run(["gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                           "/org/freedesktop/DBus", "--method", "org.freedesktop.DBus.NameHasOwner", NAME],
                          capture_output=True, text=True).stdout
    return "true" in said


def main():
    vistrel, picture = sys.argv[1:3]
    runs = int(sys.argv[3]) if len(sys.argv) > 3 else 31
    with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
        environment = {**os.environ, "XDG_CONFIG_HOME": folder, "XDG_DATA_HOME": folder}
        for variable in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"):
            environment.pop(variable, None)
        program = subprocess.Popen([vistrel, picture], env={**environment, "QT_QPA_PLATFORM": "offscreen"},
                                   stderr=subprocess.DEVNULL)
        while not has_owner():
            time.sleep(0.1)
        times = []
        for _ in range(runs):
            start = time.perf_counter()
            subprocess.run([vistrel, "-dde", picture], env=environment, check=True)
            times.append((time.perf_counter() - start) * 1000)
        program.terminate()
        program.wait()
    print(f"hand-over median {statistics.median(times):.1f} ms, {min(times):.1f} to {max(times):.1f}")


if __name__ == "__main__":
    main()
