"""The chart of a run: time per megapixel against the radius of one box."""

OURS = "#c1121f"
MEGAPIXELS = 3840 * 2160 / 1e6
PEERS = {
    "OpenCV GaussianBlur": ("#2a9d8f", "v"),
    "OpenCV 3 x boxFilter": ("#588157", "s"),
    "FFmpeg gblur": ("#bc6c25", "D"),
    "FFmpeg boxblur": ("#dda15e", "P"),
    "FFmpeg 3 x avgblur": ("#9d8189", "X"),
    "Pillow GaussianBlur": ("#6d597a", "^"),
    "Pillow 3 x BoxBlur": ("#b56576", "<"),
}


def radii(results):
    return results.values("blur", "radius")


def line(results, what, depth, threads, **keys):
    """(radii, ms per megapixel) of a series, without what was not measured."""
    points = []
    for radius in radii(results):
        time = results.per_megapixel(what, depth=depth, threads=threads, radius=radius, **keys)
        if time is not None:
            points.append((float(radius), time))
    return [x for x, _ in points], [y for _, y in points]


def draw_panel(axes, results, depth):
    for peer in results.values("peer", "peer"):
        colour, marker = PEERS.get(peer, ("#777777", "o"))
        x, y = line(results, "peer", depth, 1, peer=peer)
        if x:
            axes.plot(x, y, color=colour, marker=marker, markersize=4.5, linewidth=1, label=peer)
    two = [(float(radius), results.fastest_peer(depth=depth, radius=radius, threads=2)) for radius in radii(results)]
    two = [(radius, found[1] / MEGAPIXELS) for radius, found in two if found]
    if two:
        axes.plot(*zip(*two), ":", color="#777777", linewidth=1.6, label="fastest peer, 2 threads")
    for threads, style in ((1, "-"), (2, "--")):
        words = f"{threads} thread{'s' * (threads > 1)}"
        points = list(zip(*line(results, "blur", depth, threads)))
        whole = [point for point in points if point[0] == int(point[0])]
        broken = [point for point in points if point not in whole]
        if whole:
            label = f"V_Blur, {words}"
            axes.plot(*zip(*whole), style, color=OURS, marker="o", markersize=5, linewidth=2.2, label=label)
        if broken:
            face = "white" if threads == 2 else OURS
            label = f"V_Blur, fractional radius, {words}"
            axes.plot(*zip(*broken), "o", color=OURS, markerfacecolor=face, markersize=6, zorder=3, label=label)
        floor = results.per_megapixel("copies", depth=depth, threads=threads)
        if floor is not None:
            axes.axhline(floor, color="#333333", linestyle=style, linewidth=1.2, label=f"four copies, {words}")
    axes.set_title("float" if depth == 32 else f"{depth} bits")
    axes.set_xlabel("radius of one box, pixels")
    axes.set_xscale("log")
    axes.set_yscale("log")
    axes.grid(True, which="major", color="#cccccc", linewidth=0.6)
    axes.grid(True, which="minor", color="#eeeeee", linewidth=0.4)
    for axis, ticks in ((axes.xaxis, (0.5, 1, 3, 10, 33, 100, 333)), (axes.yaxis, (0.5, 1, 2, 5, 10, 20, 50, 100))):
        axis.set_ticks(ticks, [f"{tick:g}" for tick in ticks])
        axis.set_ticks([], minor=True)


def draw(results, path):
    """False without matplotlib."""
    try:
        import matplotlib
    except ImportError:
        return False
    matplotlib.use("Agg")
    import matplotlib.pyplot as plt

    # The same run gives the same file.
    plt.rcParams.update({"svg.hashsalt": "vblur", "font.size": 10})
    figure, panels = plt.subplots(1, 3, figsize=(15, 6.8), sharey=True)
    for axes, depth in zip(panels, (8, 16, 32)):
        draw_panel(axes, results, depth)
    panels[0].set_ylabel("ms per megapixel (3840 x 2160 RGBA)")
    handles = {}
    for axes in panels:
        for handle, label in zip(*axes.get_legend_handles_labels()):
            handles.setdefault(label, handle)
    figure.legend(handles.values(), handles.keys(), loc="lower center", ncol=4, frameon=False)
    figure.suptitle(f"The whole filter and its peers, {results.context['cpu_model']}")
    figure.tight_layout(rect=(0, 0.17, 1, 1))
    figure.savefig(path, metadata={"Date": None} if str(path).endswith(".svg") else None, dpi=110)
    plt.close(figure)
    return True
