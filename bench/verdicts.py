"""How the tables of docs/performance.md say whether a goal is met."""


def verdict(met):
    return "yes" if met else "no"


def shortfall(missed):
    """A sentence on the rows that miss their goal, each told with what limits it."""
    if not missed:
        return "Every row meets its goal."
    return f"Short of the goal: {'; '.join(missed)}."
