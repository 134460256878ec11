#!/usr/bin/env python3
"""Counts the tests of the programs that ran under Wine: count_tests.py FOLDER [--update DOCUMENT]. FOLDER has their
results, a JSON file each. --update rewrites the table of the document. Exit code 1 where none ran."""
import json
import pathlib
import re
import sys

MARK = "<!-- written by tools/windows/count_tests.py -->"


def counts_of(path):
    result = json.loads(path.read_text(encoding="utf-8"))
    cases = [case for suite in result["testsuites"] for case in suite["testsuite"]]
    skipped = sum(case["result"] == "SKIPPED" for case in cases)
    return path.stem, len(cases), result["failures"], skipped, float(result["time"].rstrip("s"))


def update(document, programs):
    rows = [f"| `{name}` | {count} | {seconds:.1f} |" for name, count, _, _, seconds in programs]
    rows.append(f"| all | {sum(each[1] for each in programs)} | {sum(each[4] for each in programs):.1f} |")
    table = "\n".join([MARK, "", "| Program | Tests | Seconds |", "|---|---|---|", *rows]) + "\n"
    text = document.read_text(encoding="utf-8")
    begin = text.index(MARK)
    end = re.search(r"\n(?!\|)(?!$)", text[text.index("|", begin):], re.MULTILINE)
    rest = "" if end is None else text[text.index("|", begin) + end.start():]
    document.write_text(text[:begin] + table + rest, encoding="utf-8")


def main():
    programs = [counts_of(path) for path in sorted(pathlib.Path(sys.argv[1]).glob("*.json"))]
    for name, count, failed, skipped, seconds in programs:
        print(f"{name}: {count} tests, {failed} failed, {skipped} skipped, {seconds}s")
    total, failed, skipped = (sum(each[i] for each in programs) for i in (1, 2, 3))
    print(f"windows: {total} tests, {failed} failed, {skipped} skipped")
    if sys.argv[2:3] == ["--update"]:
        update(pathlib.Path(sys.argv[3]), programs)
    return 0 if total else 1


if __name__ == "__main__":
    sys.exit(main())
