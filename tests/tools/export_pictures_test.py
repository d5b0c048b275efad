#!/usr/bin/env python3
"""Compares the pictures that vistrel-export writes with the checksums that vistrel-describe prints.

usage: export_pictures_test.py DESCRIBE EXPORT [FILE...]

Every picture of each file, of the samples when none is named, is written as PNG and as PPM, as the tolerant rules read
it and as the strict ones do. What other programs (netpbm) find in it has the checksums of the same selection, and
selections without a picture have no file. With alpha, the colours are those without and the alpha is the channel.
"""

import json
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
SHOWN = 10  # complaints


def pixels(data):
    """The bytes of a picture in one of netpbm's binary formats, as PPM: width, height, red, green and blue."""
    ppm = subprocess.run(["ppmtoppm"], input=data, capture_output=True, check=True).stdout
    fields = ppm.split(maxsplit=4)
    header = len(ppm) - int(fields[1]) * int(fields[2]) * 3
    assert fields[0] == b"P6" and fields[3] == b"255"
    return int(fields[1]), int(fields[2]), ppm[header:]


def decoded(path, *switches):
    data = path.read_bytes()
    if path.suffix == ".png":
        data = subprocess.run(["pngtopnm", *switches, path], capture_output=True, check=True).stdout
    return pixels(data)


def sums(path):
    width, height, rgb = decoded(path)
    return {"width": width, "height": height, "crc": f"{zlib.crc32(rgb):08x}", "sum": [sum(rgb[i::3]) for i in range(3)]}


def listed(export, file, *switches):
    """Layer, channel and the picture's file, in the order of the lists."""
    out = subprocess.run([export, "--list", file, *switches], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                         check=False).stdout
    rows = [line.split(b"\t") for line in out.splitlines()]
    return {(int(row[-5]), int(row[-4])): row[-1].decode() for row in rows}


def described(describe, file, *switches):
    """The pictures that there are, by layer and channel; None for those that are not. Nothing of a refused file."""
    out = subprocess.run([describe, *switches, file], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                         check=False).stdout
    layers = json.loads(out)["layer_list"] or []
    return {(i, k): channel["picture"] if channel["picture"]["bitmap"] else None
            for i, layer in enumerate(layers) for k, channel in enumerate(layer["channels"])}


def wrong_pictures(describe, export, file, rules, form):
    """The number of pictures compared, and what is wrong with any."""
    ours, theirs = rules
    pictures = described(describe, file, *theirs)
    names = listed(export, file, "--format", form, *ours)
    if set(names) != set(pictures):
        return 0, [f"{file} {ours}: {len(names)} pictures are listed, and {len(pictures)} described"]
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run([export, file, "--all", "--out", folder, "--format", form, *ours], capture_output=True,
                              check=False)
        wrong = [] if (done.returncode == 0) == bool(pictures) else [f"{file} {ours}: status {done.returncode}"]
        there = {names[place]: picture for place, picture in pictures.items() if picture}
        written = {path.name for path in Path(folder).iterdir()}
        wrong += [f"{file} {ours}: {name} is there or not" for name in written ^ set(there)]
        for name in written & set(there):
            found, picture = sums(Path(folder, name)), there[name]
            wrong += [f"{name} {ours}: {key} {found[key]}, not {picture[key]}" for key in found
                      if found[key] != picture[key]]
        return len(written), wrong


def wrong_alpha(export, file):
    """Composites with their alpha against those without; the number of alphas, and what is wrong with any."""
    wrong, alphas = [], 0
    with tempfile.TemporaryDirectory() as folder:
        plain, merged = Path(folder, "plain"), Path(folder, "merged")
        for out, switches in ((plain, ()), (merged, ("--merge-alpha",))):
            subprocess.run([export, file, "--all", "--out", out, *switches], stderr=subprocess.DEVNULL, check=False)
        for path in sorted(merged.iterdir()):
            if decoded(path) != decoded(plain / path.name):
                wrong.append(f"{path.name}: other colours with alpha")
            if path.read_bytes()[25] == 6:  # of the header: pixels have an alpha
                alphas += 1
                alpha = decoded(path, "-alpha")
                channels = [decoded(other) for other in plain.glob("*")]
                if alpha not in channels:
                    wrong.append(f"{path.name}: its alpha is none of the channels")
    return alphas, wrong


def main():
    if len(sys.argv) < 3:
        sys.exit(__doc__)
    describe, export = sys.argv[1:3]
    files = sys.argv[3:] or sorted((ROOT / "samples").iterdir())
    count, alphas, wrong = 0, 0, []
    for file in files:
        for rules in (((), ("--tolerant",)), (("--strict",), ())):
            for form in ("png", "ppm"):
                compared, found = wrong_pictures(describe, export, file, rules, form)
                count += compared
                wrong += found
        if described(describe, file, "--tolerant"):
            found_alphas, found = wrong_alpha(export, file)
            alphas += found_alphas
            wrong += found
    print(*wrong[:SHOWN], f"{count} pictures and {alphas} alphas of {len(files)} files, {len(wrong)} wrong", sep="\n")
    return 1 if wrong or not count or not alphas else 0


if __name__ == "__main__":
    sys.exit(main())
