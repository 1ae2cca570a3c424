"""Verdicts on goals in the tables of docs/performance.md."""


def verdict(met):
    return "yes" if met else "no"


def is_met(median, goal, spread):
    """Whether the median reaches the goal less the run's spread, a share of the median."""
    return median >= goal - spread * median


def shortfall(missed):
    """Lists the rows that miss their goal, each with the figures that show what limits it."""
    if not missed:
        return "Every row meets its goal."
    return "\n".join(["Short of the goal:", ""] + [f"- {row}" for row in missed])
