#!/usr/bin/env python3
"""document.py FILE [--update]: each block of code in FILE is the file that the line above it links to."""
import pathlib
import re
import sys

document = pathlib.Path(sys.argv[1])
old = document.read_text()
shown = []


def block(match):
    path = document.parent / match["path"]
    shown.append(path)
    return match["link"] + match["fence"] + path.read_text() + "```\n"


new = re.sub(r"(?P<link>\[[^\]]*\]\((?P<path>\.\./examples/[^)]*)\):?\n\n)(?P<fence>```\w+\n)(.*?)```\n", block, old,
             flags=re.S)
if "--update" in sys.argv:
    document.write_text(new)
elif new != old or len(shown) != old.count("```") // 2 or not shown:
    sys.exit(f"{document} does not show the examples as they are: {sys.argv[0]} {document} --update")
