"""The speed goals, and how a run meets them."""

from dataclasses import dataclass
from typing import Optional

DEPTHS = (8, 16, 32)  # 32: floats
COLOUR_METHODS = ("Luminance", "Chroma", "Hue", "Saturation", "Value", "Colour")
YUV_MODES = ("Luminance", "U", "V", "Chroma")
SINGLE_MODES = ("Red", "Green", "Blue", "Alpha", "Grey")


@dataclass
class Cell:
    """One goal at one depth: the worst case measured for it, and which one it is."""

    limit: float
    at_least: bool = False
    value: Optional[float] = None
    where: str = ""

    def take(self, value, where):
        if value is None:
            return
        worse = self.value is None or (value < self.value if self.at_least else value > self.value)
        if worse:
            self.value, self.where = value, where

    @property
    def met(self):
        if self.value is None:
            return None
        return self.value >= self.limit if self.at_least else self.value <= self.limit


@dataclass
class Goal:
    text: str
    cells: dict  # by depth; None for what both have in common
    unit: str = ""


def blur(depth, **keys):
    return ("blur", {"depth": depth, "radius": 10, **keys})


def radii(results):
    return [float(radius) for radius in results.values("blur", "radius")]


def text_of(radius):
    return f"{radius:.4g}"


def is_whole(radius):
    return radius == int(radius)


# Limits by depth, and with 256-bit lanes times the factor.
GROUPS = (
    ("whole radii up to 10", {8: 0.9, 16: 0.85}, 1.6, lambda r: is_whole(r) and r <= 10),
    ("radius 33", {8: 1.1, 16: 1.0}, 1.6, lambda r: r == 33),
    ("other radii up to 127", {8: 2.0, 16: 2.0}, 1.8, lambda r: r <= 127 and not (is_whole(r) and (r <= 10 or r == 33))),
    ("radius 333", {8: 3.5, 16: 2.0}, 1.8, lambda r: r == 333),
    ("radius 3 to 333", {32: 4.0}, 1.8, lambda r: r >= 3),
)


def against_copies(results):
    for level, words in (("native", ""), ("AVX2", ", 256-bit lanes")):
        for name, limits, narrow_factor, belongs in GROUPS:
            cells = {}
            for depth in limits:
                cell = cells[depth] = Cell(limits[depth] * (narrow_factor if level == "AVX2" else 1.0))
                for radius in radii(results):
                    if belongs(radius):
                        ratio = results.ratio(
                            blur(depth, radius=text_of(radius), level=level), ("copies", {"depth": depth})
                        )
                        cell.take(ratio, f"r = {text_of(radius)}")
            yield Goal(f"over four copies{words}: {name}", cells)


def against_peers(results):
    groups = (
        ("radius 3 to 33", {8: 7.0, 16: 4.0}, lambda r: 3 <= r <= 34),
        ("radius 62 to 100", {8: 6.0, 16: 3.0}, lambda r: 62 <= r <= 100),
        ("radius 0.5", {8: 2.0, 16: 2.5}, lambda r: r == 0.5),
        ("radius 333", {8: 3.5, 16: 3.0}, lambda r: r == 333),
        ("radius 3 to 333", {32: 2.0}, lambda r: r >= 3),
    )
    for name, limits, belongs in groups:
        cells = {}
        for depth in limits:
            cell = cells[depth] = Cell(limits[depth], at_least=True)
            for radius in filter(belongs, radii(results)):
                keys = {"depth": depth, "radius": text_of(radius)}
                peer = results.fastest_peer(**keys)
                ours = results.median("blur", **keys)
                if peer and ours:
                    cell.take(peer[1] / ours, f"r = {text_of(radius)}, {peer[0]}")
        yield Goal(f"faster than the fastest peer: {name}", cells)


def worst_ratio(text, limit, pairs, at_least=False, float_limit=None):
    """pairs(depth) gives (ratio, where) for each case of the goal."""
    cells = {}
    for depth in DEPTHS:
        cell = cells[depth] = Cell(float_limit if depth == 32 and float_limit else limit, at_least)
        for ratio, where in pairs(depth):
            cell.take(ratio, where)
    return Goal(text, cells)


def two_threads(results, depth):
    if results.by_processor:
        return []  # processor time on one thread and the clock's on two do not compare
    return [
        (results.ratio(blur(depth, radius=text_of(r)), blur(depth, radius=text_of(r), threads=2)), f"r = {text_of(r)}")
        for r in radii(results)
    ]


def within_the_filter(results):
    def modes(names):
        return lambda depth: [(results.ratio(blur(depth, mode=mode), blur(depth)), mode) for mode in names]

    yield worst_ratio(
        "radius 100 over radius 10",
        1.5,
        lambda depth: [(results.ratio(blur(depth, radius=100), blur(depth)), "")],
        float_limit=1.3,
    )
    yield worst_ratio("two threads faster than one", 1.8, lambda depth: two_threads(results, depth), at_least=True)
    yield worst_ratio("Luminance, Chroma, U, V over RGBA", 3.0, modes(YUV_MODES))
    yield worst_ratio("one channel or Grey over RGBA", 1.5, modes(SINGLE_MODES))
    yield worst_ratio(
        "Sharpen over Blur", 1.5, lambda depth: [(results.ratio(blur(depth, method="Sharpen"), blur(depth)), "")]
    )


def mix_back(results):
    methods = results.values("mix", "method")
    arithmetic = [method for method in methods if method not in COLOUR_METHODS]
    for names, words, limit in (
        (arithmetic, "arithmetic methods", 1.5),
        (COLOUR_METHODS, "Luminance, Chroma, Hue, Saturation, Value, Colour", 6.0),
    ):
        for form, suffix in (("plain", ""), ("blended", ", blended")):

            def pairs(depth, names=names, form=form):
                copy = ("copyboth", {"depth": depth})
                return [
                    (results.ratio(("mix", {"depth": depth, "method": name, "form": form}), copy), name)
                    for name in names
                ]

            yield worst_ratio(f"mix-back over copies: {words}{suffix}", limit, pairs)


def once(results):
    """Goals without a depth."""
    for what, keys, text, limit, unit, factor in (
        ("run", {"threads": 2, "pause": 0}, "an empty run over 2 threads", 10.0, "us", 1e3),
        ("startup", {"command": "--version"}, "start-up: vblur --version", 50.0, "ms", 1.0),
    ):
        time = results.median(what, **keys)
        cell = Cell(limit)
        cell.take(None if time is None else time * factor, "")
        yield Goal(text, {None: cell}, unit)
    cell = Cell(1.15)
    wall = results.median("sequence", measure="wall")
    stages = {stage: results.median("sequence", measure=stage) for stage in ("read", "render", "write")}
    if wall and all(stages.values()):
        slowest = max(stages, key=stages.get)
        cell.take(wall / stages[slowest], slowest)
    yield Goal("a sequence over its slowest stage", {None: cell})


def all_goals(results):
    for part in (against_copies, against_peers, within_the_filter, mix_back, once):
        yield from part(results)
