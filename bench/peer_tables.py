"""The tables of docs/performance.md that compare with other libraries."""
import math

from verdicts import is_at_least, shortfall, verdict

GOALS = {
    "DES-CBC decryption": 10, "3DES-CBC decryption": 10, "RC2-CBC decryption": 6, "DES-CBC encryption": 1.0,
    "3DES-CBC encryption": 1.0, "RC2-CBC encryption": 1.0, "RC4 encryption": 1.0, "MD2": 0.97, "MD4": 0.97, "MD5": 0.97,
    "SHA-1": 0.97,
}
LEVEL_GOALS = {"avx2": (10, 8, 8), "portable": (3, 2.5, 4)}  # in the order of DECRYPTIONS
LEVEL_NAMES = {"avx512": "AVX-512", "avx2": "AVX2", "neon": "NEON", "portable": "portable"}
DECRYPTIONS = [work for work in GOALS if work.endswith("decryption")]  # where LATCHKEY_CPU matters most


class Workload:
    """One workload of all libraries: MB/s and their spread, and the fastest of the other libraries."""

    def __init__(self, reports, work):
        self.rates, self.spreads = {}, {}
        for report in reports:
            for name, row in report.rows.items():
                if name.startswith(work + "/"):
                    peer = name.split("/")[1]
                    self.rates[peer] = row["bytes_per_second"] / 1e6
                    self.spreads[peer] = report.spreads[name]
        self.fastest = max((peer for peer in self.rates if peer != "latchkey"), key=self.rates.get)
        self.ratio = self.rates["latchkey"] / self.rates[self.fastest]
        self.spread = math.hypot(self.spreads["latchkey"], self.spreads[self.fastest])

    def cell(self, peer):
        return f"{self.rates[peer]:.0f} ±{self.spreads[peer]:.0%}"


def peer_table(reports):
    yield "| workload | Latchkey, MB/s | fastest peer, MB/s | ratio | goal | met |"
    yield "|---|---|---|---|---|---|"
    missed = []
    for name, goal in GOALS.items():
        work = Workload(reports, name)
        own, other = work.cell("latchkey"), work.cell(work.fastest)
        met = work.ratio >= goal
        if not met:
            missed.append(f"{name}: {work.ratio:.3f} of {goal}, {own} MB/s compared with {other}")
        yield (f"| {name} | {own} | {work.fastest} {other} | {work.ratio:.2f} ±{work.spread:.0%} | {goal} | "
               f"{verdict(met)} |")
    yield ""
    yield shortfall(missed)


def level_table(reports, levels):
    """`levels` maps each value of LATCHKEY_CPU to the report of its run."""
    widest = reports[0].context["kernels"]
    yield f"| workload | {widest}, as above | {' | '.join(f'`LATCHKEY_CPU={name}`' for name in levels)} |"
    yield "|---|---" + "|---" * len(levels) + "|"
    missed = []
    for place, name in enumerate(DECRYPTIONS):
        work = Workload(reports, name)
        cells = [ratio_cell(work, GOALS[name], work.ratio >= GOALS[name])]
        for level, report in levels.items():
            if report.context["kernels"] != level:
                cells.append("not on this machine")
                continue
            work, goal = Workload([report], name), LEVEL_GOALS[level][place]
            met = is_at_least(work.ratio, goal, work.spread)
            cells.append(ratio_cell(work, goal, met))
            if not met:
                missed.append(f"{name}, {level}: {work.ratio:.2f} ±{work.spread:.0%} of {goal}")
        yield f"| {name} | {' | '.join(cells)} |"
    yield ""
    yield shortfall(missed)


def speed_bars(report, levels):
    """The bars of each decryption: Latchkey with the widest instructions and with those of `levels`, and the peer."""
    bars = {}
    for name in DECRYPTIONS:
        work = Workload([report], name)
        bars[name] = [(f"Latchkey, {LEVEL_NAMES[report.context['kernels']]}", work.rates["latchkey"], work.ratio)]
        for level, other in levels.items():
            if other.context["kernels"] == level != report.context["kernels"]:
                narrower = Workload([other], name)
                bars[name].append((LEVEL_NAMES[level], narrower.rates["latchkey"], narrower.ratio))
        bars[name].append((f"{work.fastest}, the fastest peer", work.rates[work.fastest], None))
    return bars


def ratio_cell(work, goal, met):
    return (f"{work.rates['latchkey']:.0f} MB/s, {work.ratio:.1f} ±{work.spread:.0%} times {work.fastest}, goal {goal}: "
            f"{'met' if met else 'not met'}")
