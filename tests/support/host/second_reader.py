"""Reads pictures with other code than the host's: FILE... Writes FILE.raw for each: a line "width height channels",
then bytes, the top row first. Prints a line for each file that cannot be read, and ends with 1 then."""
import subprocess
import sys

import numpy
from PIL import Image


def with_pillow(file):
    with Image.open(file) as picture:
        picture._tile_orientation = None  # TIFF files would be turned by their tag
        picture.load()
        if picture.mode.startswith("I"):
            return (numpy.asarray(picture, dtype=numpy.float64) / 65535.0)[..., None]
        if picture.mode not in ("L", "LA", "RGB", "RGBA"):
            raise ValueError(f"unexpected mode {picture.mode}")
        pixels = numpy.asarray(picture, dtype=numpy.float64) / 255.0
    return pixels if pixels.ndim == 3 else pixels[..., None]


# By ffmpeg's names: type, largest value, and planes or the samples of a pixel in their order.
FORMATS = {
    "gray": ("u1", 255, "Y", False), "rgb24": ("u1", 255, "RGB", False), "rgba": ("u1", 255, "RGBA", False),
    "abgr": ("u1", 255, "ABGR", False),
    "gray16be": (">u2", 65535, "Y", False), "gray16le": ("<u2", 65535, "Y", False),
    "rgb48be": (">u2", 65535, "RGB", False), "rgb48le": ("<u2", 65535, "RGB", False),
    "rgba64be": (">u2", 65535, "RGBA", False), "rgba64le": ("<u2", 65535, "RGBA", False),
    "gray10le": ("<u2", 1023, "Y", False), "gray12le": ("<u2", 4095, "Y", False),
    "gbrp10le": ("<u2", 1023, "GBR", True), "gbrp10be": (">u2", 1023, "GBR", True),
    "gbrap10le": ("<u2", 1023, "GBRA", True), "gbrap10be": (">u2", 1023, "GBRA", True),
    "gbrp12le": ("<u2", 4095, "GBR", True), "gbrp12be": (">u2", 4095, "GBR", True),
    "gbrap12le": ("<u2", 4095, "GBRA", True), "gbrap12be": (">u2", 4095, "GBRA", True),
    "grayf32le": ("<f4", 1, "Y", False), "gbrpf32le": ("<f4", 1, "GBR", True), "gbrapf32le": ("<f4", 1, "GBRA", True),
}


def run(*command):
    return subprocess.run(command, check=True, stdin=subprocess.DEVNULL, capture_output=True).stdout


def with_ffmpeg(file):
    width, height, form = run("ffprobe", "-v", "error", "-show_entries", "stream=width,height,pix_fmt", "-of",
                              "csv=p=0", file).decode().strip().split(",")[:3]
    kind, largest, order, planes = FORMATS[form]
    raw = run("ffmpeg", "-v", "error", "-i", file, "-frames:v", "1", "-f", "rawvideo", "-")
    shape = (len(order), int(height), int(width)) if planes else (int(height), int(width), len(order))
    samples = numpy.frombuffer(raw, dtype=kind).reshape(shape).astype(numpy.float64) / largest
    if planes:
        samples = samples.transpose(1, 2, 0)
    wanted = [c for c in "YRGBA" if c in order]
    return samples[..., [order.index(c) for c in wanted]]


def with_magick(file):
    width, height, channels = run("identify", "-format", "%w %h %[channels]", file).decode().split()
    order = "gray" if channels.startswith("gray") else "rgba" if channels.endswith("a") else "rgb"
    raw = run("convert", file, "-depth", "16", "-endian", "LSB", order + ":-")
    pixels = numpy.frombuffer(raw, dtype="<u2").reshape(int(height), int(width), -1).astype(numpy.float64) / 65535.0
    if run("identify", "-format", "%[tiff:alpha]", file) == b"associated":  # it divides then
        pixels[..., :3] *= pixels[..., 3:]
    return pixels


def with_own_code(file):
    """Radiance pictures: a text, "-Y height +X width", then rows of shared exponents, each channel packed in runs."""
    with open(file, "rb") as source:
        data = source.read()
    size, _, packed = data.partition(b"\n\n")[2].partition(b"\n")
    height, width = int(size.split()[1]), int(size.split()[3])
    rows, at = [], 0
    for _ in range(height):
        assert packed[at:at + 2] == b"\x02\x02" and packed[at + 2] << 8 | packed[at + 3] == width
        at += 4
        row = []
        while len(row) < 4 * width:
            count = packed[at]
            if count > 128:
                row += [packed[at + 1]] * (count - 128)
                at += 2
            else:
                row += packed[at + 1:at + 1 + count]
                at += 1 + count
        rows.append(numpy.array(row, dtype=numpy.float64).reshape(4, width))
    pixels = numpy.stack(rows).transpose(0, 2, 1)
    return pixels[..., :3] * numpy.exp2(pixels[..., 3:] - 136)


def read(file):
    if file.endswith(".hdr"):
        return with_own_code(file)
    if file.endswith((".exr", ".dpx")):
        return with_ffmpeg(file)
    try:
        return with_pillow(file)
    except (OSError, ValueError):  # floats in TIFF files
        return with_magick(file)


def main():
    code = 0
    for file in sys.argv[1:]:
        try:
            pixels = read(file)
        except Exception as error:  # whatever a reader says of the file
            print(f"{file}: {error}")
            code = 1
            continue
        height, width, channels = pixels.shape
        with open(file + ".raw", "wb") as out:
            out.write(f"{width} {height} {channels}\n".encode())
            out.write(numpy.clip(pixels * 255 + 0.5, 0, 255).astype(numpy.uint8).tobytes())
    return code


sys.exit(main())
