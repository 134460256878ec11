#!/usr/bin/env python3
"""Lists the test suites that are not named after their file: in X_test.cpp a suite's name begins with X, in
X_windows_test.cpp and X_posix_test.cpp too.

A typed suite that several files instantiate is known by the prefix of each instantiation, so that is checked there.
Exit code 1 when a suite is misnamed.
"""
import pathlib
import re
import sys

SUITE = re.compile(r"^\s*(?:TEST|TEST_F|TEST_P|TYPED_TEST|TYPED_TEST_P|TYPED_TEST_SUITE|TYPED_TEST_SUITE_P|"
                   r"REGISTER_TYPED_TEST_SUITE_P|INSTANTIATE_TYPED_TEST_SUITE_P)\(\s*(\w+)", re.MULTILINE)


def subject_of(path):
    return re.sub("(_windows|_posix)?_test\\.cpp$", "", path.name)


def misnamed(path):
    """Line and name of each suite that does not begin with the file's subject, once each."""
    subject = subject_of(path)
    text = path.read_text(encoding="utf-8")
    found = {}
    for match in SUITE.finditer(text):
        name = match.group(1)
        if not name.startswith(subject):
            found.setdefault(name, text.count("\n", 0, match.start(1)) + 1)
    return found.items()


def main():
    project = pathlib.Path(__file__).resolve().parents[2]
    root = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else project / "tests"
    complaints = [f"{path}:{line}: suite {name}, expected a name that begins with {subject_of(path)}"
                  for path in sorted(root.rglob("*_test.cpp")) for name, line in misnamed(path)]
    print("".join(complaint + "\n" for complaint in complaints), end="")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
