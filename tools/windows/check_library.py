#!/usr/bin/env python3
"""Looks at a Windows library: what it exports, what it needs, and how it spills vectors to the stack.

usage: check_library.py OBJDUMP FILE --exports NAME,... [--needs NAME,...]

--needs lists the libraries beside the system's that it may import. Stacks of Windows are aligned to 16 bytes, so an
aligned move of 32 or 64 bytes to or from the stack crashes at random: compilers must use unaligned ones there, or align
the stack of the function themselves. Exit code 1 with a line for each finding.
"""
import argparse
import re
import subprocess
import sys

SYSTEM = {"advapi32", "gdi32", "glu32", "kernel32", "msvcrt", "ole32", "opengl32", "shell32", "user32",
          "api-ms-win-core-synch-l1-2-0"}
FUNCTION = re.compile(r"^[0-9a-f]+ <(.+)>:$")
# Moves that need aligned memory, to or from a place on the stack.
ALIGNED_SPILL = re.compile(r"\bvmov(?:aps|apd|dqa|dqa32|dqa64)\b.*\(%(?:rsp|rbp)[,)]")
WIDE = re.compile(r"%[yz]mm\d")
ALIGNS_STACK = re.compile(r"\band\s+\$0xffffffffffffff[ec]0,%rsp|\band\s+\$0xffffffffffffff80,%rsp")


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def exports_of(text):
    table = text.partition("[Ordinal/Name Pointer] Table")[2]
    names = []
    for line in table.splitlines()[1:]:
        match = re.match(r"\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+[0-9a-f]+\s+)?(\S+)$", line)
        if not match:
            break
        names.append(match.group(1))
    return names


def imports_of(text):
    return [name.lower().removesuffix(".dll") for name in re.findall(r"DLL Name: (\S+)", text)]


def aligned_spills(lines):
    """Function and instruction of each aligned spill of a wide vector in a function that does not align its stack."""
    function, aligns = "", False
    for line in lines:
        begin = FUNCTION.match(line)
        if begin:
            function, aligns = begin.group(1), False
        elif ALIGNS_STACK.search(line):
            aligns = True
        elif not aligns and WIDE.search(line) and ALIGNED_SPILL.search(line):
            yield function, line.split("\t")[-1].strip()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("objdump")
    parser.add_argument("file")
    parser.add_argument("--exports", required=True)
    parser.add_argument("--needs", default="")
    given = parser.parse_args()
    headers = run(given.objdump, "-p", given.file)
    findings = []
    exports, imports = exports_of(headers), imports_of(headers)
    if sorted(exports) != sorted(given.exports.split(",")):
        findings.append(f"exports {', '.join(exports)}; expected {given.exports}")
    beside = set(filter(None, given.needs.split(",")))
    for name in sorted(set(imports) - SYSTEM - beside):
        findings.append(f"needs {name}, which is neither the system's nor one of: {', '.join(sorted(beside))}")
    code = run(given.objdump, "-d", "--no-show-raw-insn", given.file).splitlines()
    wide = sum(1 for line in code if WIDE.search(line))
    if wide == 0:
        findings.append("has no instruction with vectors of 32 or 64 bytes: the check sees nothing")
    findings += [f"{function}: {instruction}: an aligned spill" for function, instruction in aligned_spills(code)]
    for finding in findings[:50]:
        print(f"{given.file}: {finding}")
    if not findings:
        print(f"exports: {', '.join(sorted(exports))}\nneeds: {', '.join(sorted(imports))}\n"
              f"{wide} instructions with wide vectors, no aligned spill")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
