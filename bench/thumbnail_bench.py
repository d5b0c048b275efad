#!/usr/bin/env python3
"""The time that a thumbnail takes from `open` to the written file, beside the viewer's from there to its bitmap.

usage: bench/thumbnail_bench.py BUILD [SIDE...]

BUILD is a folder with the release build, SIDE what thumbnails are fitted into (128 and 256 when none is named). For
each workload of load_runner the two programs take turns. The processor's time is counted of all processes that a
thumbnail takes, less what the program takes to start and say how it is used. Medians in milliseconds.
"""

import resource
import statistics
import subprocess
import sys
import tempfile
from pathlib import Path

RUNS = 15


def run(*command):
    """The processor's milliseconds, and the output."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    done = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=True)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return 1e3 * (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime), done.stdout


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    build, sides = Path(sys.argv[1]), sys.argv[2:] or ["128", "256"]
    runner, export = build / "bench" / "load_runner", build / "tools" / "export" / "vistrel-export"
    start = statistics.median(run(export, "--help")[0] for _ in range(RUNS))
    print(f"{'workload':28}{'viewer':>8}" + "".join(f"{'to ' + side:>10}{'ratio':>7}" for side in sides))
    with tempfile.TemporaryDirectory() as folder:
        file, thumbnail = Path(folder, "file"), Path(folder, "thumbnail.png")
        for name in (line.split()[0] for line in run(runner, "list")[1].splitlines()):
            run(runner, "write", name, file)
            viewer, ours = [], {side: [] for side in sides}
            for _ in range(RUNS):
                viewer.append(float(run(runner, "load", file, 1)[1]))
                for side, times in ours.items():
                    times.append(run(export, "--thumbnail", side, file, thumbnail)[0] - start)
            load = statistics.median(viewer)
            print(f"{name:28}{load:8.1f}" + "".join(f"{statistics.median(times):10.1f}"
                                                    f"{statistics.median(times) / load:7.2f}" for times in ours.values()))


if __name__ == "__main__":
    main()
