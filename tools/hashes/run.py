"""./dev hashes: renders the same frames on every platform, at every CPU level, with several numbers of threads, by the
effect called directly and by the program, and compares the hashes of the pictures.

usage: run.py --files-tool TOOL --platform NAME;TOOL;PROGRAM[;RUNNER]... [options]

A platform is its hash_tool, its vblur, and the command that starts them here, if any. hash_files_tool, which runs here,
writes the frames as files and reads what the programs made of them.

Exit code 1 when a hash differs or a frame is missing.
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from matrix import Matrix, Row, as_markdown, as_text, parse

ROOT = Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs" / "SAME_BITS.md"
BEGIN, END = "<!-- written by ./dev hashes --update -->\n", "<!-- end -->\n"


class Platform:
    def __init__(self, text):
        self.name, tool, program, runner = (text.split(";") + [""])[:4]
        self.tool, self.program = Path(tool).resolve(), Path(program).resolve()
        self.runner = [str(Path(runner).resolve())] if runner else []

    def run(self, program, *arguments, folder=ROOT):
        """The exit code and what was printed. Into files: what a runner leaves running would keep a pipe open."""
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
            code = subprocess.run([*self.runner, str(program), *map(str, arguments)], cwd=folder,
                                  stdin=subprocess.DEVNULL, stdout=out, stderr=err, check=False, timeout=600).returncode
            texts = []
            for file in (out, err):
                file.seek(0)
                texts.append(file.read().decode("utf-8", "replace"))
            return code, *texts

    def ask(self, *arguments):
        """What the tool prints; ends all when the tool fails."""
        code, out, err = self.run(self.tool, *arguments)
        if code != 0:
            sys.exit(f"hashes: {self.name}: {self.tool} {' '.join(map(str, arguments))} ended with {code}: {err.strip()}")
        return out


class Run:
    def __init__(self, options):
        self.options = options
        self.platforms = [Platform(text) for text in options.platform]
        self.files = Platform(f"files;{options.files_tool};-")
        self.pool = ThreadPoolExecutor(os.cpu_count())
        self.matrix = Matrix([platform.name for platform in self.platforms])
        self.complaints = []
        levels = [platform.ask("levels").split() for platform in self.platforms]
        shared = [level for level in levels[0] if all(level in other for other in levels)]
        self.unshared = [f"{platform.name} alone has {level}" for platform, own in zip(self.platforms, levels)
                         for level in own if level not in shared]
        wanted = options.levels.split(",") if options.levels else shared
        self.levels = [level for level in shared if level in wanted]
        self.settings = [(level, int(threads)) for level in self.levels for threads in options.threads.split(",")]

    def write_frames(self):
        shutil.rmtree(self.options.work, ignore_errors=True)
        self.files.ask("write", self.options.work, "--sequences", self.options.sequences)
        self.jobs = {}  # of files and sequences: {name: the job file}
        for job in sorted(self.options.work.glob("jobs/**/job.json")):
            name = job.parent.relative_to(self.options.work / "jobs")
            self.jobs.setdefault(name.parts[0], {})[name.as_posix()] = job

    def by_effect(self, platform):
        def ask(setting):
            return platform.ask("effect", self.options.work, "--count", self.options.count, "--sequences",
                                self.options.sequences, "--cpu", setting[0], "--threads", setting[1])

        for (level, threads), text in zip(self.settings, self.pool.map(ask, self.settings)):
            for frames, hashes in parse(text).items():
                self.matrix.add(Row(frames, "effect", level, threads), platform.name, hashes)

    def by_program(self, platform):
        """The start of the program takes far longer than a frame: each setting renders all sequences, many frames a
        start, and its share of the other jobs. A share that 3 does not divide meets every number of threads with each
        job."""
        share = self.options.share
        for index, (level, threads) in enumerate(self.settings):
            rows = {frames: Row(frames, "vblur job", level, threads) for frames in ("files", "sequences")}
            if not platform.program.exists():
                for row in rows.values():
                    self.matrix.add(row, platform.name, None)
                continue
            dealt = {name: job for at, (name, job) in enumerate(self.jobs["files"].items()) if at % share == index % share}
            rendered = self.rendered(platform, rows["files"], {**dealt, **self.jobs.get("sequences", {})})
            self.matrix.add(rows["files"], platform.name, rendered.get("files", {}), dealt)
            self.matrix.add(rows["sequences"], platform.name, rendered.get("sequences", {}))

    def rendered(self, platform, row, jobs):
        """The hashes of what the program makes of the jobs, {frames: {name: hash}}."""
        for picture in self.options.work.glob("jobs/**/out*.png"):
            picture.unlink()

        def start(job):
            command = [platform.program, "job", "job.json", "--cpu", row.level, "--threads", row.threads, "--overwrite",
                       "--no-sync"]
            code, out, err = platform.run(*command, folder=job.parent)
            # A program says why it fails: this one was not started, as happens with Wine on a busy machine.
            if code != 0 and not err.strip() and platform.runner:
                return platform.run(*command, folder=job.parent)
            return code, out, err

        for name, (code, _, err) in zip(jobs, self.pool.map(start, jobs.values())):
            if code != 0:
                self.complaints.append(f"{platform.name}: vblur job, {name}: {err.strip()}")
        return parse(self.files.ask("outputs", self.options.work))

    def everything(self):
        self.write_frames()
        for platform in self.platforms:
            self.by_effect(platform)
            self.by_program(platform)

    def facts(self):
        """Nothing that changes with the machine or the day."""
        count = {row.frames: len(self.matrix.names_of(row)) for row in self.matrix.rows() if row.way == "effect"}
        share = "all" if self.options.share == 1 else f"1 in {self.options.share}"
        yield f"{count['golden']} golden jobs, {count['random']} random frames, {count['floats']} random frames of floats."
        yield f"{count['files']} frames in files, of which each row of `vblur job` renders {share}."
        yield (f"{count.get('sequences', 0)} random frames in {len(self.jobs.get('sequences', {}))} sequences, all "
               "rendered in each row of `vblur job`.")
        for platform in self.platforms:
            program = "" if platform.program.exists() else "; its `vblur` is not built"
            yield f"{platform.name}: {platform.ask('compiler').strip()}{program}."

    def update_page(self, table):
        before, rest = PAGE.read_text(encoding="utf-8").split(BEGIN)
        facts = "".join(f"- {fact}\n" for fact in self.facts())
        PAGE.write_text(f"{before}{BEGIN}\n{facts}\n{as_markdown(table)}\n{END}{rest.split(END)[1]}", encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description="Compares the hashes of frames")
    parser.add_argument("--files-tool", required=True)
    parser.add_argument("--platform", action="append", required=True)
    parser.add_argument("--levels", help="of those that all platforms have, such as twin,native [all]")
    parser.add_argument("--threads", default="1,2,7")
    parser.add_argument("--count", type=int, default=2000, help="random frames in memory [%(default)s]")
    parser.add_argument("--sequences", type=int, default=20,
                        help="sequences of 100 random frames in files [%(default)s]")
    parser.add_argument("--share", type=int, default=7, metavar="N",
                        help="the program renders 1 in N jobs of one frame at each setting [%(default)s]")
    parser.add_argument("--all", action="store_const", const=1, dest="share",
                        help="every setting renders every job of one frame")
    parser.add_argument("--work", type=Path, default=Path("build/hashes"), help="a folder for the frames [%(default)s]")
    parser.add_argument("--update", action="store_true", help="rewrite the table of docs/SAME_BITS.md")
    options = parser.parse_args()
    begin = time.monotonic()
    run = Run(options)
    run.everything()
    table, all_same = run.matrix.lines()
    print(as_text(table), end="")
    for line in [*run.facts(), *run.unshared, *run.complaints[:10]]:
        print(line)
    print(f"{'all the same' if all_same else 'NOT the same'}, {time.monotonic() - begin:.0f} s")
    if options.update:
        run.update_page(table)
    return 0 if all_same else 1


if __name__ == "__main__":
    sys.exit(main())
