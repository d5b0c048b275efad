#!/usr/bin/env python3
"""The most memory that the viewer has with a picture on screen, beside what the picture itself takes.

usage: peak_memory.py VISTREL BARE_MDI LOAD_RUNNER

Shows a Photoshop document of 4096 x 4096 in RGB on a screen of its own (Xvfb), and a program of the toolkit with one
empty child. Prints both peaks (VmHWM), and what the viewer has beyond planes, bitmap and the bare program.
"""

import os
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SECONDS = 3  # until all is on screen
PLANES = BITMAP = 48.0  # MiB


def peak(command, environment):
    program = subprocess.Popen(command, env=environment, stderr=subprocess.DEVNULL)
    time.sleep(SECONDS)
    status = Path(f"/proc/{program.pid}/status").read_text()
    program.kill()
    program.wait()
    return int(status.split("VmHWM:")[1].split()[0]) / 1024


def main():
    vistrel, bare, runner = sys.argv[1:4]
    with tempfile.TemporaryDirectory() as folder:
        read_end, write_end = os.pipe()
        server = subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1600x1200x24", "-nolisten",
                                   "tcp", "-noreset"], pass_fds=[write_end], stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            display = ":" + pipe.readline().strip()
        environment = os.environ | {"DISPLAY": display, "QT_QPA_PLATFORM": "xcb", "XDG_CONFIG_HOME": folder,
                                    "XDG_DATA_HOME": folder}
        picture = os.path.join(folder, "picture.psd")
        subprocess.run([runner, "write", "psd-rgb8-raw", picture], check=True)
        viewer, least = peak([vistrel, picture], environment), peak([bare], environment)
        server.terminate()
        server.wait()
    print(f"viewer {viewer:.1f} MiB, bare program {least:.1f} MiB, planes and bitmap {PLANES + BITMAP:.1f} MiB")
    print(f"beyond them {viewer - least - PLANES - BITMAP:.1f} MiB")


if __name__ == "__main__":
    main()
