#!/usr/bin/env python3
"""Render the library's PNG images from their SVG sources.

The PNGs are committed, so a build never needs this script or its converter.
Run it after editing a source in resources/images/src/:

    apt-get install librsvg2-bin fonts-dejavu-core   # development machine only
    python3 scripts/make-images.py

Every image is written at 1x and, where the table says so, with its "_AT_2X"
(twice the pixels) and "_AT_3TO2X" (three halves, rounded down) siblings.
The script then reads back every PNG header and fails on a wrong size.
"""
import pathlib
import shutil
import struct
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SOURCES = ROOT / "resources" / "images" / "src"
OUTPUT = ROOT / "resources" / "images"

# Base name, pixels at 1x, whether the scaled siblings exist.
IMAGES = [
    ("P_ICONWELL_N", 18, 18, False),
    ("P_ICONWELL_N_D", 18, 18, False),
    ("P_MONITORIN_N", 6, 26, False),
    ("P_MONITOROUT_N", 6, 26, False),
    ("SP_LINK_SM_N_D", 16, 16, True),
    ("SP_POWEREDBYXMP_105X15_N", 105, 15, True),
    ("SP_POWEREDBYXMP_105X15_N_D", 105, 15, True),
    ("SP_POWEREDBYXMP_72X33_N", 72, 33, True),
    ("SP_POWEREDBYXMP_72X33_N_D", 72, 33, True),
]

# Suffix and scale as a fraction; sizes round down (105 x 15 at 3:2 is 157 x 22).
SCALES = [("", 1, 1), ("_AT_2X", 2, 1), ("_AT_3TO2X", 3, 2)]


def variants():
    for name, width, height, scaled in IMAGES:
        for suffix, num, den in SCALES if scaled else SCALES[:1]:
            yield name, name + suffix, width * num // den, height * num // den


def png_size(path):
    with open(path, "rb") as f:
        head = f.read(24)
    if len(head) < 24 or head[:8] != b"\x89PNG\r\n\x1a\n" or head[12:16] != b"IHDR":
        raise ValueError(f"{path} is not a PNG")
    return struct.unpack(">II", head[16:24])


def render(converter):
    for source, target, width, height in variants():
        svg = SOURCES / f"{source}.svg"
        png = OUTPUT / f"{target}.png"
        subprocess.run([converter, "--width", str(width), "--height", str(height),
                        "--format", "png", "--output", str(png), str(svg)], check=True)


def check():
    failures = []
    for _, target, width, height in variants():
        png = OUTPUT / f"{target}.png"
        if not png.exists():
            failures.append(f"{png.name}: missing")
            continue
        size = png_size(png)
        if size != (width, height):
            failures.append(f"{png.name}: {size[0]}x{size[1]}, expected {width}x{height}")
    return failures


def main():
    check_only = "--check" in sys.argv[1:]
    if not check_only:
        converter = shutil.which("rsvg-convert")
        if converter is None:
            sys.exit("rsvg-convert not found: apt-get install librsvg2-bin")
        render(converter)
    failures = check()
    for failure in failures:
        print(failure, file=sys.stderr)
    if failures:
        sys.exit(1)
    print(f"{sum(1 for _ in variants())} images, all of the expected size")


if __name__ == "__main__":
    main()
