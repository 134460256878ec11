"""The matrix of hashes: lists of frames with their hashes, compared between rows and platforms, and its table."""

import hashlib
from typing import NamedTuple


class Row(NamedTuple):
    """What one list of hashes was made with."""
    frames: str  # golden, random, files or sequences
    way: str
    level: str
    threads: int


def parse(text):
    """The lines of hash_tool as {frames: {name: rest of the line}}; frames are the first part of a name."""
    sets = {}
    for line in text.splitlines():
        name, rest = line.split(" ", 1)
        sets.setdefault(name.split("/")[0], {})[name] = rest
    return sets


def combined(hashes):
    """One hash of a list."""
    text = "".join(f"{name} {hashes[name]}\n" for name in sorted(hashes))
    return hashlib.sha256(text.encode()).hexdigest()[:16]


class Matrix:
    def __init__(self, platforms):
        self.platforms = platforms
        self.lists = {}  # (row, platform): {name: rest}; None for what is not built
        self.expected = {}  # row: the names that its lists must have; absent: all of its frames

    def add(self, row, platform, hashes, expected=None):
        self.lists[row, platform] = hashes
        if expected is not None:
            self.expected[row] = set(expected)

    def rows(self):
        """Those of the same frames and way one after the other, in the order in which they were added."""
        rows = list(dict.fromkeys(row for row, _ in self.lists))
        groups = list(dict.fromkeys((row.frames, row.way) for row in rows))
        return sorted(rows, key=lambda row: groups.index((row.frames, row.way)))

    def names_of(self, row):
        if row in self.expected:
            return self.expected[row]
        return {name for (other, _), hashes in self.lists.items() if other.frames == row.frames and hashes
                for name in hashes}

    def reference(self):
        """The first hash that each frame has; rows and platforms in the order in which they were added."""
        first = {}
        for hashes in self.lists.values():
            for name, value in (hashes or {}).items():
                first.setdefault(name, value)
        return first

    def verdict(self, row, reference):
        """ "same", or what is first wrong in any of the row's lists."""
        for platform in self.platforms:
            hashes = self.lists.get((row, platform))
            if hashes is None:
                continue
            for name in sorted(self.names_of(row) | hashes.keys()):
                if name not in hashes:
                    return f"MISSING (first frame {name}, {platform})"
                if hashes[name] != reference[name]:
                    return f"DIFFERENT (first frame {name}, {platform})"
        return "same"

    def lines(self):
        """The cells of the table with its head, and whether all is the same."""
        reference = self.reference()
        table = [["Frames", "Way", "CPU level", "Threads", "Number", *self.platforms, ""]]
        all_same = bool(self.lists)
        for row in self.rows():
            lists = [self.lists.get((row, platform)) for platform in self.platforms]
            verdict = self.verdict(row, reference)
            all_same &= verdict == "same"
            table.append([row.frames, row.way, row.level, str(row.threads), str(len(self.names_of(row))),
                          *("-" if hashes is None else combined(hashes) for hashes in lists), verdict])
        return table, all_same


def as_text(table):
    widths = [max(map(len, column)) for column in zip(*table)]
    return "".join("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip() + "\n" for line in table)


def as_markdown(table):
    head, *body = table
    return "".join("| " + " | ".join(line) + " |\n" for line in [head, ["---"] * len(head), *body]).replace("|  |", "| |")
