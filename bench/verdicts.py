"""Verdicts on goals in the tables of docs/performance.md."""
import statistics


def spread_of(values):
    """The coefficient of variation."""
    return statistics.pstdev(values) / statistics.mean(values)


def verdict(met):
    return "yes" if met else "no"


def is_at_most(median, goal, spread):
    """Whether the median less the run's spread is within a goal that is a maximum."""
    return median - spread * median <= goal


def is_at_least(median, goal, spread):
    """Whether the median plus the run's spread, a fraction of the median, reaches the goal."""
    return median >= goal - spread * median


def shortfall(missed):
    """Lists the rows that miss their goal, each with the figures that show what limits it."""
    if not missed:
        return "Every row meets its goal."
    return "\n".join(["Short of the goal:", ""] + [f"- {row}" for row in missed])
