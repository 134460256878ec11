#!/usr/bin/env python3
"""Looks at a Windows library: what it exports, what it needs, and how it spills vectors to the stack.

usage: check_library.py OBJDUMP FILE --needs NAME,... [--exports NAME,...] [--any-exports]

--needs lists the libraries that it imports, these and no others. Stacks of Windows are aligned to 16 bytes, so an
aligned move of 32 or 64 bytes to or from the stack crashes at random: compilers must use unaligned ones there, or align
the stack of the function themselves. Exit code 1 with a line for each finding.
"""
import argparse
import re
import subprocess
import sys

FUNCTION = re.compile(r"^[0-9a-f]+ <(.+)>:$")
# Moves that need aligned memory: on the stack, or behind a pointer that may lead there. What lies at a place of the
# library itself is aligned.
ALIGNED_SPILL = re.compile(r"\bvmov(?:aps|apd|dqa|dqa32|dqa64)\b.*\(%(?!rip)\w+[,)]")
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
    parser.add_argument("--exports", default="")
    parser.add_argument("--any-exports", action="store_true")
    parser.add_argument("--needs", required=True)
    given = parser.parse_args()
    headers = run(given.objdump, "-p", given.file)
    findings = []
    exports, imports = exports_of(headers), imports_of(headers)
    if not given.any_exports and sorted(exports) != sorted(filter(None, given.exports.split(","))):
        findings.append(f"exports {', '.join(exports)}; expected {given.exports}")
    needed = set(given.needs.split(","))
    findings += [f"needs {name}, expected not to" for name in sorted(set(imports) - needed)]
    findings += [f"does not need {name}, expected to" for name in sorted(needed - set(imports))]
    code = run(given.objdump, "-d", "--no-show-raw-insn", given.file).splitlines()
    wide = sum(1 for line in code if WIDE.search(line))
    findings += [f"{function}: {instruction}: an aligned spill" for function, instruction in aligned_spills(code)]
    for finding in findings[:50]:
        print(f"{given.file}: {finding}")
    if not findings:
        shown = f"{len(exports)} names" if given.any_exports else ", ".join(sorted(exports))
        print(f"exports: {shown}\nneeds: {', '.join(sorted(imports))}\n"
              f"{wide} instructions with wide vectors, no aligned spill")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
