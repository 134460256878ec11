"""readme.py README BIN: the commands under "Using it", one after the other in an empty folder, with the program of BIN."""
import os
import pathlib
import subprocess
import sys
import tempfile


def commands(readme):
    section = readme.split("\n## Using it\n", 1)[1].split("\n- ", 1)[0]
    return [line.strip() for line in section.splitlines() if line.startswith("    ")]


def main():
    listed = commands(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    if len(listed) < 15:
        print(f"expected the commands of the section, found {len(listed)}")
        return 1
    environment = dict(os.environ, PATH=sys.argv[2] + os.pathsep + os.environ["PATH"])
    with tempfile.TemporaryDirectory() as folder:
        for command in listed:
            done = subprocess.run(["bash", "-c", command], cwd=folder, env=environment, capture_output=True, text=True)
            if done.returncode != 0 or "error" in done.stderr:
                print(f"{command}\nexit {done.returncode}: {done.stderr}")
                return 1
    return 0


sys.exit(main())
