#!/usr/bin/env python3
"""Small lights of many times white, blurred at depth 16 and at depth 32 side by side: highlights.py PROGRAM PICTURE."""
import subprocess
import struct
import sys
import tempfile
from pathlib import Path

WIDTH, HEIGHT, GAP = 320, 240, 8
# Column, row, radius, and the light of red, green and blue; 1.0 is white.
LIGHTS = [
    (70, 70, 4, (60, 42, 20)), (165, 55, 2.5, (60, 60, 60)), (250, 80, 5, (14, 24, 60)),
    (100, 160, 3, (60, 12, 8)), (190, 150, 6, (20, 16, 9)), (265, 180, 2, (60, 60, 48)), (40, 205, 3, (10, 50, 16)),
]


def scene():
    """A dusk that gets darker upwards, with lights, as the bytes of a PFM file from the bottom up."""
    rows = []
    for y in range(HEIGHT - 1, -1, -1):
        for x in range(WIDTH):
            pixel = [0.02 + 0.05 * y / HEIGHT, 0.03 + 0.05 * y / HEIGHT, 0.06 + 0.05 * y / HEIGHT]
            for column, row, radius, colour in LIGHTS:
                if (x - column) ** 2 + (y - row) ** 2 <= radius ** 2:
                    pixel = colour
            rows.append(struct.pack("<fff", *pixel))
    return b"PF\n%d %d\n-1.0\n" % (WIDTH, HEIGHT) + b"".join(rows)


def pixels(path):
    header, size, most, data = Path(path).read_bytes().split(b"\n", 3)
    assert (header, size, most) == (b"P6", b"%d %d" % (WIDTH, HEIGHT), b"255"), path
    return data


def main():
    program, picture = (Path(word).resolve() for word in sys.argv[1:])
    with tempfile.TemporaryDirectory() as folder:
        Path(folder, "dusk.pfm").write_bytes(scene())

        def run(*words):
            subprocess.run([program, "-q", "render", *words], cwd=folder, check=True)

        panels = []
        for depth in (16, 32):
            run("dusk.pfm", f"{depth}.ppm", "--depth", str(depth), "--blur", "36")
            panels.append(pixels(f"{folder}/{depth}.ppm"))
        row = 3 * WIDTH
        joined = b"".join(panels[0][y * row:(y + 1) * row] + b"\xff" * (3 * GAP) + panels[1][y * row:(y + 1) * row]
                          for y in range(HEIGHT))
        Path(folder, "both.ppm").write_bytes(b"P6\n%d %d\n255\n" % (2 * WIDTH + GAP, HEIGHT) + joined)
        run("both.ppm", picture, "--blur", "0", "--overwrite")


main()
