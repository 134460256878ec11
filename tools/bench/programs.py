"""Times of the program: start-up, and a rendered sequence of files."""

import json
import subprocess
import time

STARTS = 21
SEQUENCES = 5
FRAMES = "1-32"


def case(name, milliseconds):
    """As Google Benchmark writes it."""
    return {"run_name": name, "real_time": milliseconds, "time_unit": "ms"}


def start_up(program, folder):
    chart = folder / "small.png"
    subprocess.run([program, "-q", "chart", chart, "--size", "16x16", "--overwrite"], check=True)
    commands = {
        "--version": ["--version"],
        "--help": ["--help"],
        "render": ["-q", "render", chart, folder / "small-out.png", "--blur", "3", "--overwrite"],
    }
    for _ in range(STARTS):
        for name, arguments in commands.items():
            start = time.perf_counter()
            subprocess.run([program, *arguments], check=True, stdout=subprocess.DEVNULL)
            yield case(f"what=startup/command={name}", (time.perf_counter() - start) * 1e3)


def sequence(program, folder):
    """Times of the whole run and of its stages, from --progress json."""
    frames, out = folder / "frame.%04d.dpx", folder / "out.%04d.dpx"
    size = ["--size", "1920x1080", "--depth", "16", "--frames", FRAMES, "--overwrite"]
    subprocess.run([program, "-q", "chart", frames, *size], check=True)
    command = [program, "render", frames, out, "--frames", FRAMES, "--blur", "30", "--overwrite", "--progress", "json"]
    for _ in range(SEQUENCES):
        run = subprocess.run(command, check=True, capture_output=True, text=True)
        end = json.loads(run.stderr.splitlines()[-1])
        yield case("what=sequence/measure=wall", end["wall"] * 1e3)
        for stage, seconds in end["seconds"].items():
            yield case(f"what=sequence/measure={stage}", seconds * 1e3)
    for pattern in ("frame.*.dpx", "out.*.dpx"):
        for file in folder.glob(pattern):
            file.unlink()


def measure(program, folder):
    """None where the program was not built."""
    if not program.exists():
        return []
    return [*start_up(program, folder), *sequence(program, folder)]
