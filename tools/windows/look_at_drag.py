#!/usr/bin/env python3
"""Whether drag_ring has dragged the ring to 120 pixels: look_at_drag.py JOB PICTURE."""

import json
import re
import struct
import sys
import zlib

WIDTH, HEIGHT = 640, 360
MIDDLE = HEIGHT // 2


def read_png(name):
    """Rows of pixels of an RGB or RGBA file of 8 bits."""
    data = open(name, "rb").read()
    at, packed, header = 8, b"", None
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at : at + 8])
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", data[at + 8 : at + 8 + size])
        elif kind == b"IDAT":
            packed += data[at + 8 : at + 8 + size]
        at += size + 12
    width, height, depth, colour = header[:4]
    if (width, height, depth) != (WIDTH, HEIGHT, 8) or colour not in (2, 6):
        sys.exit(f"{name}: expected {WIDTH}x{HEIGHT} of 8 bits, found {header}")
    step = {2: 3, 6: 4}[colour]
    raw, rows, before = zlib.decompress(packed), [], bytes(width * step)
    for y in range(height):
        line = raw[y * (width * step + 1) :][: width * step + 1]
        row = bytearray(line[1:])
        for i in range(len(row)):
            left = row[i - step] if i >= step else 0
            corner = before[i - step] if i >= step else 0
            up = before[i]
            nearest = min((left, up, corner), key=lambda each: abs(left + up - corner - each))
            row[i] = (row[i] + (0, left, up, (left + up) // 2, nearest)[line[0]]) & 255
        rows.append([tuple(row[x : x + 3]) for x in range(0, len(row), step)])
        before = row
    return rows


def shows_line(rows, column):
    """Whether a thin line crosses the middle row there: the picture below it is smooth."""
    row = rows[MIDDLE]
    ground = row[column - 8]
    return any(max(abs(a - b) for a, b in zip(pixel, ground)) > 50 for pixel in row[column - 4 : column + 5])


def main():
    job, picture = sys.argv[1:]
    text = open(job, encoding="utf-8").read()
    blur = json.loads(text)["properties"]["Blur"]
    if not 119 < blur < 121:
        sys.exit(f"Blur is {blur} after the drag, expected 119 to 121")
    written = re.search(r'"Blur": *([-+.\de]+)', text).group(1)
    # Drags are counted in floats of 32 bits.
    if struct.unpack("f", struct.pack("f", blur))[0] != blur or written != repr(blur):
        sys.exit(f"Blur is written as {written}, with digits that no drag has")
    rows = read_png(picture)
    if not shows_line(rows, 440) or shows_line(rows, 400):
        sys.exit("the ring is not where it was dragged: expected it at the column 440, and none at 400")
    print(f"Blur is {written} after the drag, and so is the ring")


main()
