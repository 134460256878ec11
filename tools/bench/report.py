"""The tables of a run, as text for a terminal or as Markdown."""

import goals as speed_goals

LEVELS = ("twin", "SCALAR", "EMU128", "SSE2", "SSSE3", "SSE4", "AVX2", "AVX3", "AVX3_DL", "NEON", "native")


def number(value, unit=""):
    if value is None:
        return "-"
    text = f"{value:.0f}" if value >= 100 else f"{value:.2f}" if value < 10 else f"{value:.1f}"
    return f"{text} {unit}".strip()


def over(a, b):
    return None if a is None or b is None else a / b


class Table:
    def __init__(self, title, head):
        self.title, self.head, self.rows = title, head, []

    def add(self, *cells):
        self.rows.append([str(cell) for cell in cells])

    def text(self):
        lines = [self.head, *self.rows]
        widths = [max(len(line[i]) for line in lines) for i in range(len(self.head))]
        body = []
        for line in lines:
            cells = [line[0].ljust(widths[0])] + [cell.rjust(width) for cell, width in zip(line[1:], widths[1:])]
            body.append("  ".join(cells).rstrip())
        body.insert(1, "-" * max(map(len, body)))
        return "\n".join([self.title, "", *body, ""])

    def markdown(self):
        rule = ["---"] + ["---:"] * (len(self.head) - 1)
        lines = ["| " + " | ".join(line) + " |" for line in [self.head, rule, *self.rows]]
        return "\n".join([f"## {self.title}", "", *lines, ""])


def name_of(depth):
    return "float" if depth == 32 else f"{depth} bits"


def depths_and_threads():
    return [
        f"{name_of(depth)}, {threads} thread{'s' * (threads > 1)}" for depth in speed_goals.DEPTHS for threads in (1, 2)
    ]


def goals_table(results):
    heads = [cell for depth in speed_goals.DEPTHS for cell in (name_of(depth), "limit", "")]
    table = Table("Goals", ["goal", *heads])
    words = {True: "met", False: "NOT MET", None: "-"}
    for goal in speed_goals.all_goals(results):
        row = [goal.text]
        for depth in speed_goals.DEPTHS:
            cell = goal.cells.get(depth)
            if None in goal.cells:
                cell = goal.cells[None] if depth == 8 else None
            if cell is None:
                row += ["", "", ""]
                continue
            where = f" ({cell.where})" if cell.where and cell.value is not None else ""
            sign = ">=" if cell.at_least else "<="
            row += [number(cell.value, goal.unit) + where, f"{sign} {cell.limit:.3g}", words[cell.met]]
        table.add(*row)
    return table


def sizes_table(results):
    table = Table(
        "The filter by radius: ms per megapixel, and over four copies",
        ["radius of one box"]
        + depths_and_threads(),
    )
    rows = [("four copies", "copies", {})]
    rows += [(radius, "blur", {"radius": radius}) for radius in results.values("blur", "radius")]
    for name, what, keys in rows:
        cells = []
        for depth in speed_goals.DEPTHS:
            for threads in (1, 2):
                base = {"depth": depth, "threads": threads}
                time = results.per_megapixel(what, **base, **keys)
                ratio = over(time, results.per_megapixel("copies", **base))
                cells.append(number(time) if what == "copies" else f"{number(time)} ({number(ratio)})")
        table.add(name, *cells)
    return table


def levels_table(results, depth):
    found = results.values("blur", "level")
    levels = [level for level in LEVELS if level in found] + sorted(set(found) - set(LEVELS))
    best = results.context.get("cpu_level", "native")
    radii = sorted({case["radius"] for case, _ in results.cases("blur") if case["level"] != "native"}, key=float)
    table = Table(
        f"Instruction sets, {name_of(depth)}, one thread: ms per megapixel by radius, and over four copies",
        ["", *radii],
    )
    floor = results.per_megapixel("copies", depth=depth)
    for level in levels:
        times = [results.per_megapixel("blur", depth=depth, radius=radius, level=level) for radius in radii]
        cells = ["-" if time is None else f"{number(time)} ({number(over(time, floor))})" for time in times]
        table.add(best if level == "native" else level, *cells)
    return table


def modes_table(results):
    table = Table(
        "Channels and Sharpen at r = 10, one thread: ms per megapixel, and over RGBA",
        ["", *map(name_of, speed_goals.DEPTHS)],
    )
    rows = [("RGBA", {})]
    for mode in ("RGB", "Alpha", "Red", "Green", "Blue", "Grey", "Luminance", "U", "V", "Chroma"):
        rows.append((mode, {"mode": mode}))
    rows.append(("RGBA, Sharpen", {"method": "Sharpen"}))
    for name, keys in rows:
        cells = []
        for depth in speed_goals.DEPTHS:
            time = results.per_megapixel("blur", depth=depth, radius=10, **keys)
            whole = results.per_megapixel("blur", depth=depth, radius=10)
            cells.append("-" if time is None else f"{number(time)} ({number(over(time, whole))})")
        if set(cells) != {"-"}:
            table.add(name, *cells)
    return table


def mix_table(results):
    table = Table(
        "Mix-back, one thread: ms per megapixel, and over a copy of source and result",
        ["", *(name_of(depth) + form for depth in speed_goals.DEPTHS for form in ("", ", blended"))],
    )
    floors = {depth: results.per_megapixel("copyboth", depth=depth) for depth in speed_goals.DEPTHS}
    table.add("copy of source and result", *(cell for floor in floors.values() for cell in (number(floor), "")))
    for method in results.values("mix", "method"):
        cells = []
        for depth in speed_goals.DEPTHS:
            for form in ("plain", "blended"):
                time = results.per_megapixel("mix", depth=depth, method=method, form=form)
                cells.append("-" if time is None else f"{number(time)} ({number(over(time, floors[depth]))})")
        table.add(method, *cells)
    return table


def rows_table(results):
    levels = [level for level in LEVELS if level in results.values("rows", "level")]
    best = results.context.get("cpu_level", "native")
    table = Table(
        "Copies and fills, one thread: ms per megapixel, and over a copy",
        [""] + [f"{depth} bits, {best if level == 'native' else level}" for depth in (8, 16) for level in levels],
    )
    ways = ("copy", "mirrored", "copy of RGB", "mirrored RGB", "fill", "fill outside", "clear")
    for way in ways if levels else ():
        cells = []
        for depth in (8, 16):
            floor = results.per_megapixel("rows", depth=depth, way="copy")
            for level in levels:
                time = results.per_megapixel("rows", depth=depth, way=way, level=level)
                cells.append("-" if time is None else f"{number(time)} ({number(over(time, floor))})")
        table.add(way, *cells)
    return table


def pictures_table(results):
    table = Table(
        "Pictures of several sizes at r = 10: ms per megapixel, and over four copies",
        ["picture"]
        + depths_and_threads(),
    )
    sizes = sorted({(int(case["width"]), int(case["height"])) for case, _ in results.cases("copies")})
    for width, height in sizes:
        cells = []
        for depth in speed_goals.DEPTHS:
            for threads in (1, 2):
                keys = {"depth": depth, "threads": threads, "width": width, "height": height}
                time = results.per_megapixel("blur", radius=10, **keys)
                floor = results.per_megapixel("copies", **keys)
                cells.append("-" if time is None else f"{number(time)} ({number(over(time, floor))})")
        table.add(f"{width} x {height}", *cells)
    return table


def peers_table(results, depth, threads):
    radii = results.values("peer", "radius")
    table = Table(
        f"Peers, {name_of(depth)}, {threads} thread{'s' * (threads > 1)}: ms per megapixel by radius", ["", *radii]
    )

    def row(name, what, **keys):
        times = [
            results.per_megapixel(what, depth=depth, radius=radius, threads=threads, **keys) for radius in radii
        ]
        if any(time is not None for time in times):
            table.add(name, *map(number, times))

    row("V_Blur", "blur")
    for peer in results.values("peer", "peer"):
        row(peer, "peer", peer=peer)
    return table


def runs_table(results):
    table = Table("Threads and programs", ["", "median"])
    runs = (("0", "an empty run over 2 threads, at once after another"), ("1000", "the same after 1 ms of rest"))
    for pause, words in runs:
        time = results.median("run", threads=2, pause=pause)
        table.add(words, "-" if time is None else number(time * 1e3, "us"))
    for case, time in results.cases("startup"):
        what = "render of a PNG of 16 x 16 pixels" if case["command"] == "render" else case["command"]
        table.add("vblur " + what, number(time, "ms"))
    for case, time in results.cases("sequence"):
        words = {"wall": "altogether"}.get(case["measure"], f"{case['measure']}, busy")
        table.add(f"a sequence of 32 frames, 1920 x 1080, 16 bits, DPX: {words}", number(time, "ms"))
    return table


def machine(results):
    context = results.context
    caches = ", ".join(
        f"L{cache['level']} {cache['type'].lower()} {cache['size'] // 1024} KiB x {cache_count(context, cache)}"
        for cache in context["caches"]
    )
    return [
        ("Processor", f"{context['cpu_model']}, {context['num_cpus']} at {context['mhz_per_cpu']} MHz"),
        ("Caches", caches),
        ("Best instruction set", context["cpu_level"]),
        ("Compiler", context["compiler"]),
        ("OpenCV", context["OpenCV"]),
        ("libavfilter", context["libavfilter"]),
        ("Pillow", context["Pillow"]),
        ("Other work meanwhile", busyness(results)),
    ]


def busyness(results):
    times = f"wall-clock time over processor time of single threads: {results.busyness:.2f}"
    how = "single threads are shown by processor time" if results.by_processor else "all times are wall-clock times"
    advice = "" if results.busyness < 1.1 else "; THE MACHINE WAS BUSY: times of two threads are unreliable"
    return f"{times}; {how}{advice}"


def cache_count(context, cache):
    return max(1, context["num_cpus"] // max(1, cache["num_sharing"]))


def all_tables(results):
    tables = [
        goals_table(results),
        sizes_table(results),
        *(levels_table(results, depth) for depth in speed_goals.DEPTHS),
        modes_table(results),
        mix_table(results),
        rows_table(results),
        pictures_table(results),
        *(peers_table(results, depth, threads) for depth in speed_goals.DEPTHS for threads in (1, 2)),
        runs_table(results),
    ]
    return [table for table in tables if table.rows]
