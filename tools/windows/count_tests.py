#!/usr/bin/env python3
"""Counts the tests of the programs that ran under Wine: count_tests.py FOLDER of their results, a JSON file each. Exit
code 1 where none ran."""
import json
import pathlib
import sys


def main():
    total = failed = skipped = 0
    for path in sorted(pathlib.Path(sys.argv[1]).glob("*.json")):
        result = json.loads(path.read_text(encoding="utf-8"))
        cases = [case for suite in result["testsuites"] for case in suite["testsuite"]]
        skips = sum(case["result"] == "SKIPPED" for case in cases)
        print(f"{path.stem}: {len(cases)} tests, {result['failures']} failed, {skips} skipped, {result['time']}")
        total += len(cases)
        failed += result["failures"]
        skipped += skips
    print(f"windows: {total} tests, {failed} failed, {skipped} skipped")
    return 0 if total else 1


if __name__ == "__main__":
    sys.exit(main())
