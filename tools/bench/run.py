"""./dev bench: runs the benchmarks, prints which goals are met, and keeps figures, tables and chart.

usage: run.py [--quick] [--update] [--cpu-time] [--report] [options of Google Benchmark]

  --quick    a subset in under two minutes
  --update   rewrite docs/PERFORMANCE-FIGURES.md and its chart
  --cpu-time take what runs on one thread by processor time, on a machine that has other work
  --report   measure nothing: print tables and chart of the last run again
"""

import json
import subprocess
import sys
from pathlib import Path

import chart
import pillow_peer
import programs
import report
from results import Results

ROOT = Path(__file__).resolve().parents[2]
BUILD = ROOT / "build" / "release"
FOLDER = BUILD / "bench-results"
PAGE = ROOT / "docs" / "PERFORMANCE-FIGURES.md"
CHART = "performance.svg"
HEAD = """# Figures

Written by `./dev bench --update`: one run on one machine. [PERFORMANCE.md](PERFORMANCE.md) describes the measurement
and what the cost depends on."""


def run_benchmarks(quick, options):
    """Repetitions of all cases are interleaved, so that other load on the machine affects all cases alike."""
    out = FOLDER / "google-benchmark.json"
    command = [
        str(BUILD / "bench" / "vblur_bench"),
        "--benchmark_repetitions=" + ("3" if quick else "5"),
        "--benchmark_min_time=" + ("0.02" if quick else "0.1"),
        "--benchmark_enable_random_interleaving=true",
        "--benchmark_display_aggregates_only=true",
        f"--benchmark_out={out}",
        "--benchmark_out_format=json",
        *(["--quick"] if quick else []),
        *options,
    ]
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
    return json.loads(out.read_text(encoding="utf-8"))


def markdown(results):
    machine = "\n".join(["| | |", "|---|---|", *(f"| {name} | {value} |" for name, value in report.machine(results))])
    tables = "\n".join(table.markdown() for table in report.all_tables(results))
    return f"{HEAD}\n\n![Time against radius]({CHART})\n\n{machine}\n\n{tables}"


def update_page(results):
    PAGE.write_text(markdown(results), encoding="utf-8")
    chart.draw(results, PAGE.parent / CHART)


def main():
    options = sys.argv[1:]
    if "-h" in options or "--help" in options:
        print(__doc__)
        return 0
    quick = "--quick" in options
    update = "--update" in options
    by_processor_time = "--cpu-time" in options
    only_report = "--report" in options
    options = [option for option in options if option not in ("--quick", "--update", "--cpu-time", "--report")]
    if not only_report:
        measure(quick, options)
    return present(update, by_processor_time)


def measure(quick, options):
    FOLDER.mkdir(parents=True, exist_ok=True)
    data = run_benchmarks(quick, options)
    if not options:
        data["context"]["Pillow"] = pillow_peer.version()
        data["benchmarks"] += pillow_peer.measure([10.0, 100.0] if quick else [0.5, 3.33, 10, 33.3, 100, 333], 3)
        data["benchmarks"] += programs.measure(BUILD / "apps" / "vblur" / "vblur", FOLDER)
    data["context"].setdefault("Pillow", "not asked")
    (FOLDER / "results.json").write_text(json.dumps(data, indent=1), encoding="utf-8")


def present(update, by_processor_time):
    results = Results.load(FOLDER / "results.json", by_processor_time)
    tables = report.all_tables(results)
    for name, value in report.machine(results):
        print(f"{name}: {value}")
    print()
    # The goals last: they are what matters.
    for table in tables[1:] + tables[:1]:
        print(table.text())
    drawn = chart.draw(results, FOLDER / CHART)
    print(f"figures: {(FOLDER / 'results.json').relative_to(ROOT)}")
    print(f"chart: {(FOLDER / CHART).relative_to(ROOT)}" if drawn else "chart: matplotlib is not installed")
    if update:
        update_page(results)
    for error in results.errors:
        print("error: " + error, file=sys.stderr)
    return 1 if results.errors else 0


if __name__ == "__main__":
    sys.exit(main())
