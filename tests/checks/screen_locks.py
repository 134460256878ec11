#!/usr/bin/env python3
"""Checks that tests which make windows run one at a time: screen_locks.py CTEST BUILD.

Tests on the screen of the whole run hold the lock `screen`. Those that are scripts make a screen of their own.
"""
import json
import subprocess
import sys


def locks_of(test):
    for each in test.get("properties", []):
        if each["name"] == "RESOURCE_LOCK":
            return each["value"]
    return []


def main():
    ctest, build = sys.argv[1:]
    listed = subprocess.run([ctest, "--show-only=json-v1"], cwd=build, check=True, capture_output=True, text=True)
    tests = [each for each in json.loads(listed.stdout)["tests"]
             if any(word.endswith("/wine-screen") for word in each.get("command", []))]
    if not tests:
        sys.exit("screen_locks: expected tests that run by tools/windows/wine-screen, found none")
    wrong = [each["name"] for each in tests if "screen" not in locks_of(each)]
    if wrong:
        sys.exit(f"screen_locks: expected RESOURCE_LOCK screen, found none: {', '.join(wrong)}")


if __name__ == "__main__":
    main()
