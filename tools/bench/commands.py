#!/usr/bin/env python3
"""Whole commands on files beside those of other programs: commands.py PROGRAM [--quick] [--update DOCUMENT].

Blurs the same pictures with the program and its peers, the commands taken in turns, and prints a table of the medians in
milliseconds and of the sizes of what they wrote. Nobody waits for the disk. A peer that is missing, or that does not
read or write a format, has no figure. --update replaces the table in a document.
"""
import argparse
import shutil
import statistics
import subprocess
import tempfile
import time
from pathlib import Path

SIGMA = 10
# The sum of three boxes of a third of the size each has this deviation: sqrt(3 * ((2 r + 1)^2 - 1) / 12).
SIZE = 3 * ((4 * SIGMA**2 + 1) ** 0.5 - 1) / 2
SIZES = {"256 x 144": "256x144", "3840 x 2160": "3840x2160"}
FRAMES = 48
# Extension, and how the program makes the picture from an uncompressed one.
FORMATS = {
    "PNG": ("png", []),
    "JPEG": ("jpg", ["--quality", "92"]),
    "TIFF": ("tif", ["--compression", "lzw"]),
    "EXR half": ("exr", ["--type", "half", "--compression", "zip"]),
    "DPX": ("dpx", ["--type", "uint10"]),
}
BEGIN, END = "<!-- commands: begin -->", "<!-- commands: end -->"


def peers(program):
    """By name: the command for a picture, and the one for a sequence, which only two have."""
    def ours(source, target, frames=None):
        command = [program, "-q", "render", source, target, "--blur", f"{SIZE:.4f}", "--overwrite", "--no-sync"]
        return command + (["--frames", f"1-{frames}"] if frames else [])

    def ffmpeg(source, target, frames=None):
        # Its writers have their own defaults of compression; the one of EXR writes halves by zip when told.
        codec = {".exr": ["-compression", "zip16", "-format", "half"], ".tif": ["-compression_algo", "lzw"],
                 ".jpg": ["-q:v", "2"]}.get(Path(target).suffix, [])
        count = ["-frames:v", str(frames or 1)] + ([] if frames else ["-update", "1"])
        return ["ffmpeg", "-y", "-loglevel", "error", "-i", source, "-vf", f"gblur=sigma={SIGMA}", *count, *codec, target]

    def vips(source, target, frames=None):
        options = {".jpg": "[Q=92]", ".tif": "[compression=lzw]"}.get(Path(target).suffix, "")
        return None if frames else ["vips", "gaussblur", source, f"{target}{options}", str(SIGMA)]

    def magick(source, target, frames=None):
        return None if frames else ["convert", source, "-blur", f"0x{SIGMA}", "-quality", "92", target]

    def copy(source, target, frames=None):
        return None if frames else ["oiiotool", source, "-o", target]

    return {"vblur": ours, "ffmpeg": ffmpeg, "vips": vips, "magick": magick, "oiiotool, a copy": copy}


def run(command, folder):
    """Milliseconds, or None where the command fails."""
    start = time.perf_counter()
    done = subprocess.run(command, cwd=folder, stdin=subprocess.DEVNULL, capture_output=True)
    return (time.perf_counter() - start) * 1e3 if done.returncode == 0 else None


def measure(program, folder, extension, sequence, repeats):
    """By name of the peer: the median in milliseconds, and the bytes written. Commands are taken in turns."""
    source = f"in.%04d.{extension}" if sequence else f"in.{extension}"
    times, sizes = {}, {}
    for repeat in range(repeats + 1):
        for name, command_of in peers(program).items():
            key = name.split(",")[0]
            target = f"{key}.%04d.{extension}" if sequence else f"{key}.{extension}"
            command = command_of(source, target, FRAMES if sequence else None)
            if command is None or shutil.which(str(command[0])) is None:
                continue
            taken = run(command, folder)
            written = list(folder.glob(target.replace("%04d", "*")))
            if taken is None or not written:
                continue
            # The first time fills the caches of the system.
            if repeat > 0:
                times.setdefault(name, []).append(taken)
            sizes[name] = sum(file.stat().st_size for file in written)
            for file in written:
                file.unlink()
    return {name: (statistics.median(each), sizes[name]) for name, each in times.items()}


def cell(measured, name):
    if name not in measured:
        return "-"
    milliseconds, size = measured[name]
    return f"{milliseconds:.0f} ({size / 1e6:.2f} MB)" if size < 1e7 else f"{milliseconds:.0f} ({size / 1e6:.0f} MB)"


def rows(program, quick):
    names = list(peers(program))
    yield "| Picture | Format | " + " | ".join(names) + " |"
    yield "|---|---|" + "---|" * len(names)
    for title, size in [*SIZES.items(), (f"{FRAMES} of 1920 x 1080", "1920x1080")]:
        sequence = " of " in title
        for label, (extension, options) in FORMATS.items():
            with tempfile.TemporaryDirectory() as scratch:
                folder = Path(scratch)
                number = ".%04d" if sequence else ""
                frames = ["--frames", f"1-{FRAMES}"] if sequence else []
                chart = f"chart{number}.ppm"
                subprocess.run([program, "-q", "chart", chart, "--size", size, *frames], cwd=folder, check=True)
                subprocess.run([program, "-q", "render", chart, f"in{number}.{extension}", "--blur", "0", *options, *frames],
                               cwd=folder, check=True)
                for file in folder.glob("chart*"):
                    file.unlink()
                repeats = 1 if quick or sequence else 7
                measured = measure(program, folder, extension, sequence, repeats)
            yield f"| {title} | {label} | " + " | ".join(cell(measured, name) for name in names) + " |"


def replace(document, table):
    text = document.read_text()
    head, rest = text.split(BEGIN)
    document.write_text(head + BEGIN + "\n" + table + "\n" + END + rest.split(END)[1])


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", type=Path)
    parser.add_argument("--quick", action="store_true", help="one repetition")
    parser.add_argument("--update", type=Path, metavar="DOCUMENT")
    options = parser.parse_args()
    table = []
    for row in rows(options.program.resolve(), options.quick):
        print(row, flush=True)
        table.append(row)
    if options.update:
        replace(options.update, "\n".join(table))


if __name__ == "__main__":
    main()
