#!/usr/bin/env python3
"""Compares the documents with the tree: who may include whom, the map of folders, and the files that they name. Also
finds lines of more than 120 characters in them, outside tables and code.

Exit code 1 when they differ.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
DOCUMENTS = ["README.md", "CONTRIBUTING.md", "docs/ARCHITECTURE.md", "docs/ARITHMETIC.md", "docs/OVERLAY.md",
             "docs/PAGES.md", "docs/PERFORMANCE.md", "docs/GALLERY.md", "docs/JOBS.md", "docs/EMBEDDING.md", "docs/RELIABILITY.md",
             "docs/SAME_BITS.md", "CHANGELOG.md"]
LONGEST = 120
CALL = re.compile(r"vblur_(?:module|check_includes)\(([^)]*)\)")
LISTED = re.compile(r"MAY_INCLUDE((?:\s+(?!LINK\b)[\w/.]+)*)")
NAMED = re.compile(r"`([\w/.-]+\.(?:h|cpp|py|sh|map|json|cmake))`")
# Names of a user's files, not of this tree.
EXAMPLES = re.compile(r"^(X|shot|look|out)[-_.]|(?:^|/)X(Command|Page|Page_test|_test)?[-_.]|^vblur/|^highway\.h$")


def files():
    return subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True, capture_output=True,
                          text=True).stdout.split()


def rooms():
    """Folder and what its CMakeLists.txt lets it include."""
    found = {}
    for top in ("src", "sdk", "host", "apps", "plugins"):
        for path in sorted((ROOT / top).rglob("CMakeLists.txt")):
            call = CALL.search(path.read_text(encoding="utf-8"))
            if call:
                listed = LISTED.search(call.group(1))
                found[path.parent.relative_to(ROOT).as_posix()] = set(listed.group(1).split()) if listed else set()
    return found


def table_rows(document, heading):
    text = (ROOT / document).read_text(encoding="utf-8").split(f"## {heading}\n")[1].split("\n## ")[0]
    return [[cell.strip() for cell in line.strip("|").split("|")] for line in text.splitlines() if line.startswith("| `")]


def include_complaints(found):
    written = {}
    for folder, may in table_rows("docs/ARCHITECTURE.md", "Who may include whom"):
        written[folder.strip("`")] = set() if may == "nothing" else set(may.split(", "))
    for folder in sorted(found.keys() | written.keys()):
        if found.get(folder) != written.get(folder):
            yield (f"docs/ARCHITECTURE.md: {folder} may include {written.get(folder, 'no row')}, "
                   f"its CMakeLists.txt says {found.get(folder, 'no room')}")


def map_complaints(found):
    folders = {name.strip("/") for row in table_rows("README.md", "Where things are")
               for name in re.findall(r"`([^`]+)`", row[0])}
    tops = {name.split("/")[0] for name in files() if "/" in name and not name.startswith(".")}
    mapped = {folder.split("/")[0] for folder in folders}
    for folder in sorted((found.keys() - folders) | (tops - mapped)):
        yield f"README.md: {folder} is not in the map of folders"


def file_complaints():
    known_files = files()
    for document in DOCUMENTS:
        for name in NAMED.findall((ROOT / document).read_text(encoding="utf-8")):
            known = any(file == name or file.endswith("/" + name) for file in known_files)
            if not known and not EXAMPLES.search(name):
                yield f"{document}: there is no file {name}"


def length_complaints():
    for document in DOCUMENTS:
        in_code = False
        for number, line in enumerate((ROOT / document).read_text(encoding="utf-8").splitlines(), 1):
            in_code ^= line.startswith("```")
            if len(line) > LONGEST and not in_code and not line.startswith("|"):
                yield f"{document}:{number}: {len(line)} characters, expected at most {LONGEST}"


def main():
    found = rooms()
    complaints = [*include_complaints(found), *map_complaints(found), *file_complaints(), *length_complaints()]
    print("".join(complaint + "\n" for complaint in complaints), end="")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
