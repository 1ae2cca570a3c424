"""The pictures of the documents: docs/performance.svg (time by length) and docs/speed.svg (compared with the fastest
peer). Their text stays text, so that it can be found, copied and read aloud."""
import math

import matplotlib

matplotlib.use("svg")
matplotlib.rcParams.update({"svg.hashsalt": "latchkey", "svg.fonttype": "none", "font.size": 9,
                            "font.family": "sans-serif", "axes.spines.top": False, "axes.spines.right": False})
from matplotlib import pyplot  # noqa: E402  (after the choice of the backend)

PANELS = {
    "Ciphers": ("Encrypt", "Decrypt"),
    "Hashes": ("CreateHash",),
    "Conversions, inputs and results": ("(copying", "InputData", "OutputData", "Password", "StringTo", "ByteArrayTo",
                                        "Convert"),
    "Random data": ("CreateRandom", "CreateSaltValue"),
}
MOST_BYTES = 60_000  # of a picture
LABEL_POINTS = 9  # the least distance between the labels of two lines


def growth_lines(rates):
    """The points of each operation: lengths and nanoseconds for each unit of the length."""
    lines = {}
    for name in rates.rows:
        _, operation, length = name.split("/")
        if int(length) > 0:
            lines.setdefault(operation, []).append((int(length), rates.nanoseconds(name) / int(length)))
    return {operation: sorted(points) for operation, points in lines.items()}


def draw_growth(rates, path):
    lines = growth_lines(rates)
    figure, grid = pyplot.subplots(2, 2, figsize=(10, 8.4), sharex=True, sharey=True)
    for axes, (title, prefixes) in zip(grid.flat, PANELS.items()):
        chosen = {operation: points for operation, points in lines.items() if operation.startswith(prefixes)}
        assert len(chosen) <= len(pyplot.cm.tab10.colors), title
        for color, points in zip(pyplot.cm.tab10.colors, chosen.values()):
            axes.loglog(*zip(*points), color=color, linewidth=1.2)
        axes.minorticks_off()
        axes.set_title(title, loc="left", fontsize=10)
        axes.grid(True, which="major", alpha=0.3)
    for axes in grid[1]:
        axes.set_xlabel("bytes, characters or digits")
    for axes in grid[:, 0]:
        axes.set_ylabel("nanoseconds for each")
    figure.subplots_adjust(left=0.07, right=0.84, top=0.96, bottom=0.06, wspace=0.62, hspace=0.12)
    for axes, prefixes in zip(grid.flat, PANELS.values()):
        label_ends(axes, [operation for operation in lines if operation.startswith(prefixes)])
    save(figure, path)


def label_ends(axes, labels):
    """Writes each line's label at its end, moved up where it would cover another one."""
    height = axes.get_window_extent().height * 72 / axes.figure.dpi
    low, high = (math.log10(limit) for limit in axes.get_ylim())
    ends = sorted((((math.log10(line.get_ydata()[-1]) - low) / (high - low) * height, line, label)
                   for line, label in zip(axes.get_lines(), labels)), key=lambda end: end[0])
    place = -math.inf
    for end, line, label in ends:
        place = max(end, place + LABEL_POINTS)
        last = (line.get_xdata()[-1], line.get_ydata()[-1])
        moved = place - end > 1
        axes.annotate(label, last, xytext=(8, place - end), textcoords="offset points", va="center", fontsize=7.5,
                      color=line.get_color(), annotation_clip=False,
                      arrowprops={"arrowstyle": "-", "color": line.get_color(), "lw": 0.4} if moved else None)


def draw_speed(works, path):
    """`works` maps each workload to its bars from top to bottom: (label, MB/s, times the fastest peer or None)."""
    figure, grid = pyplot.subplots(len(works), 1, figsize=(8, 1.3 * len(works)), sharex=True)
    for axes, (title, bars) in zip(grid, works.items()):
        labels, rates, times = zip(*reversed(bars))
        colors = ["#1a66b8" if ratio else "#9aa0a6" for ratio in times]
        drawn = axes.barh(labels, rates, color=colors, height=0.72)
        axes.bar_label(drawn, [f"{rate:,.0f} MB/s" + (f", {ratio:.1f} times" if ratio else "")
                               for rate, ratio in zip(rates, times)], padding=3, fontsize=8)
        axes.set_title(title, loc="left", fontsize=9.5)
        axes.spines["bottom"].set_visible(False)
        axes.tick_params(bottom=False, labelbottom=False, left=False)
    grid[0].set_xlim(right=1.25 * grid[0].get_xlim()[1])
    figure.tight_layout()
    save(figure, path)


def save(figure, path):
    figure.savefig(path, metadata={"Date": None})
    pyplot.close(figure)
    assert path.stat().st_size < MOST_BYTES, path
