#!/usr/bin/env python3
"""The error of the blur at depth 32 against exact rational numbers, over a sweep of sizes.

float_error.py PROGRAM [MOST]: blurs random rows with the program, computes the same three boxes with integers alone,
without any rounding, and prints a table of the largest and the mean difference in units in the last place of the exact
result. Ends with 1 where one is larger than MOST.
"""
import json
import random
import struct
import subprocess
import sys
import tempfile
from fractions import Fraction
from pathlib import Path

WIDTH = 512
SIZES = [0.5, 1, 2, 3, 5, 10, 17.3, 30, 50, 99.9, 100, 200, 300.5, 500, 720]
BITS_OF_FLOAT = 24


def to_float(value):
    """The nearest 32-bit float."""
    return struct.unpack("<f", struct.pack("<f", value))[0]


def write_pfm(path, rows):
    """`rows` of equal length, three equal components a pixel."""
    with open(path, "wb") as file:
        file.write(b"PF\n%d %d\n-1.0\n" % (len(rows[0]), len(rows)))
        for row in reversed(rows):
            file.write(b"".join(struct.pack("<fff", value, value, value) for value in row))


def read_tiff(path):
    """The first components of an uncompressed TIFF file of floats whose rows lie in one strip."""
    data = Path(path).read_bytes()
    at, = struct.unpack_from("<I", data, 4)
    count, = struct.unpack_from("<H", data, at)
    tags = {}
    for i in range(count):
        tag, kind, _, value = struct.unpack_from("<HHII", data, at + 2 + 12 * i)
        tags[tag] = value & 0xFFFF if kind == 3 else value
    width, height, strip, channels = tags[256], tags[257], tags[273], tags[277]
    if data[:4] != b"II*\0" or tags[259] != 1 or tags.get(278, height) < height:
        sys.exit(f"{path}: expected a little-endian TIFF file without compression, of one strip")
    values = struct.unpack_from(f"<{channels * width * height}f", data, strip)
    return [values[channels * width * row:channels * width * (row + 1):channels] for row in range(height)]


def boxes(row, radius):
    """Three boxes over a row whose ends repeat, exactly: integers, and what they are all to be divided by."""
    steps = 1 << 60
    line = [int(Fraction(value) * steps) for value in row]
    whole = int(radius)
    fraction = Fraction(radius) - whole
    weight = fraction.denominator
    ends = fraction.numerator
    reach = whole + (1 if ends else 0)
    line = [line[0]] * (3 * reach) + line + [line[-1]] * (3 * reach)
    for _ in range(3):
        sums = [0]
        for value in line:
            sums.append(sums[-1] + value)
        line = [
            weight * (sums[i + whole + 1] - sums[i - whole]) + (ends * (line[i - reach] + line[i + reach]) if ends else 0)
            for i in range(reach, len(line) - reach)
        ]
    return line, steps * (weight * (2 * whole + 1) + 2 * ends) ** 3


def ulps(value, numerator, denominator):
    """How far a float is from a positive quotient, in units in the last place of the quotient."""
    exponent = numerator.bit_length() - denominator.bit_length()
    scaled = Fraction(numerator, denominator)
    if scaled < Fraction(2) ** exponent:
        exponent -= 1
    return float(abs(Fraction(value) - scaled) / Fraction(2) ** (exponent - BITS_OF_FLOAT + 1))


def contents():
    source = random.Random(32)
    plain = [to_float(source.random()) for _ in range(WIDTH)]
    # From deep shadows to a light of 64 times white.
    bright = [to_float(2.0 ** source.uniform(-12, 6)) for _ in range(WIDTH)]
    return [plain, bright]


def main():
    program = Path(sys.argv[1]).resolve()
    most = float(sys.argv[2]) if len(sys.argv) > 2 else float("inf")
    largest = 0.0
    rows = contents()
    print("| Size | Radius of a box | 0 to 1: largest | mean | 2^-12 to 64: largest | mean |")
    print("|---|---|---|---|---|---|")
    with tempfile.TemporaryDirectory() as folder:
        write_pfm(f"{folder}/in.pfm", rows)
        for size in SIZES:
            job = {
                "depth": 32, "input": {"file": "in.pfm"}, "output": {"file": "out.tif", "compression": "none"},
                "properties": {"Blur": size, "Aspect": 100, "X Edge Method": "Repeat"},
            }
            Path(folder, "job.json").write_text(json.dumps(job))
            subprocess.run([program, "-q", "job", "job.json", "--overwrite", "--no-sync"], cwd=folder, check=True)
            radius = to_float(to_float(size) / 3)
            cells = [f"{size:g}", f"{radius:.4f}"]
            for row, result in zip(rows, read_tiff(f"{folder}/out.tif")):
                exact, divisor = boxes(row, radius)
                errors = [ulps(value, number, divisor) for value, number in zip(result, exact)]
                largest = max(largest, *errors)
                cells += [f"{max(errors):.2f}", f"{sum(errors) / len(errors):.2f}"]
            print("| " + " | ".join(cells) + " |")
    sys.exit(largest > most)


main()
