"""How long the program takes to do next to nothing."""

import subprocess
import time

RUNS = 21


def measure(program, folder):
    """Cases as Google Benchmark writes them; none where the program was not built."""
    if not program.exists():
        return []
    chart = folder / "small.png"
    out = folder / "small-out.png"
    subprocess.run([program, "-q", "chart", chart, "--size", "16x16", "--overwrite"], check=True)
    commands = {
        "--version": ["--version"],
        "--help": ["--help"],
        "render": ["-q", "render", chart, out, "--blur", "3", "--overwrite"],
    }
    runs = []
    for _ in range(RUNS):
        for name, arguments in commands.items():
            start = time.perf_counter()
            subprocess.run([program, *arguments], check=True, stdout=subprocess.DEVNULL)
            milliseconds = (time.perf_counter() - start) * 1e3
            runs.append({"run_name": f"what=startup/command={name}", "real_time": milliseconds, "time_unit": "ms"})
    return runs
