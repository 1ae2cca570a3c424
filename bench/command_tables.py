"""The tables of docs/performance.md about the command: two processors, and start-up."""
from processor import processor_time
from verdicts import is_at_most, verdict

GOAL = 1.8


def label(row):
    return f"{row['cipher']} decryption into a {row['output']}"


def busy(row):
    return processor_time(row["two"]) / (2 * row["two"]["seconds"])


def decryption_table(found):
    yield ("| workload | one processor, s | two, s | times as fast | goal | met | if never waiting | both busy | "
           "two commands apart | these, if never waiting |")
    yield "|---|---|---|---|---|---|---|---|---|---|"
    for row in found["decryption"]:
        one, two = row["one"]["seconds"], row["two"]["seconds"]
        yield (f"| {label(row)} | {one:.2f} | {two:.2f} | {row['ratio']:.2f} | {GOAL} | "
               f"{verdict(row['ratio'] >= GOAL)} | {row['ratio_never_waiting']:.2f} | {busy(row):.0%} | "
               f"{row['ratio_apart']:.2f} | {row['ratio_apart_never_waiting']:.2f} |")


def processor_table(found):
    yield "| processor time, s: user + system | one processor | two | two commands apart |"
    yield "|---|---|---|---|"
    for row in found["decryption"]:
        cells = " | ".join(seconds(row[way]) for way in ("one", "two", "apart"))
        yield f"| {label(row)} | {cells} |"
    yield f"| `cat` of the plaintext's size into a file, {found['copy']['seconds']:.2f} s | {seconds(found['copy'])} | | |"


def seconds(taken):
    return f"{taken['user']:.2f} + {taken['system']:.2f}"


def limits(found):
    """The reason why each row misses its goal, from its figures."""
    short = [row for row in found["decryption"] if row["ratio"] < GOAL]
    if not short:
        yield "Every row meets its goal."
    for row in short:
        yield f"- {label(row)}, {row['ratio']:.2f}: {limit(row)}."


def limit(row):
    one, two, apart = row["one"], row["two"], row["apart"]
    grown, grown_apart = (processor_time(way) - processor_time(one) for way in (two, apart))
    user, system = (two[kind] - one[kind] for kind in ("user", "system"))
    growth = (f"two processors spend {grown:+.2f} s of processor time compared with one (user {user:+.2f} s, "
              f"system {system:+.2f} s)")
    shared = f"two commands that share nothing spend {grown_apart:+.2f} s"
    waiting = f"they are busy {busy(row):.0%} of the time"
    never_waiting = row["ratio_never_waiting"]
    if never_waiting < GOAL:
        return (f"the additional processor time is enough to miss it. {growth.capitalize()}; without any waiting the "
                f"ratio would be {never_waiting:.2f}; {shared}; {waiting}")
    return (f"waiting. {waiting.capitalize()}; without any waiting the ratio would be {never_waiting:.2f}; {growth}; "
            f"{shared}")


def start_table(found):
    start, true, goal = (found["start"][key] for key in ("milliseconds", "milliseconds_true", "milliseconds_allowed"))
    yield "| start, ms | of `true`, ms | goal, ms | met |"
    yield "|---|---|---|---|"
    spread = found["start"]["spread"]
    yield f"| {start:.2f} ±{spread:.0%} | {true:.2f} | {goal:.2f} | {verdict(is_at_most(start, goal, spread))} |"
