"""The plot of docs/performance.md: time for each byte, character or digit by length."""
import itertools

import matplotlib

matplotlib.use("svg")
matplotlib.rcParams["svg.hashsalt"] = "latchkey"
from matplotlib import pyplot  # noqa: E402  (after the choice of the backend)

STYLES = ("-", "--", ":")


def draw(rates, path):
    lines = {}
    for name in rates.rows:
        _, operation, length = name.split("/")
        if int(length) > 0:
            lines.setdefault(operation, []).append((int(length), rates.nanoseconds(name) / int(length)))
    figure, axes = pyplot.subplots(figsize=(9, 7))
    for style, (operation, points) in zip(itertools.cycle(STYLES), sorted(lines.items())):
        axes.loglog(*zip(*sorted(points)), style, marker=".", label=operation)
    axes.set_xlabel("bytes, characters or digits")
    axes.set_ylabel("nanoseconds for each")
    axes.grid(True, which="major", alpha=0.3)
    axes.legend(fontsize="x-small", ncol=2)
    figure.tight_layout()
    figure.savefig(path, metadata={"Date": None})
    pyplot.close(figure)
