"""The tables of docs/performance.md about users' data: rows, many files, Python and databases."""
from processor import processor_time
from verdicts import shortfall, verdict

ROWS_SECONDS = 1.0  # for a million rows of CSV
TIMES_PROCESSES = 500
TIMES_CP = 5
PYTHON_MICROSECONDS = 0.4  # above the C function


def rows_table(found):
    yield f"| {found['rows']:,} rows, 3DES | s | user + system, s | if never waiting, s | goal, s | met |"
    yield "|---|---|---|---|---|---|"
    missed = []
    for way, taken in found["ways"].items():
        processors = 1 if "one processor" in way or "cat" in way else found["processors"]
        least = processor_time(taken) / processors
        goal = ROWS_SECONDS * found["rows"] / 1e6 if way == "decrypt csv" else None
        met = goal is None or taken["seconds"] <= goal
        yield (f"| {way} | {taken['seconds']:.2f} | {taken['user']:.2f} + {taken['system']:.2f} | {least:.2f} | "
               f"{f'{goal:.2f} | {verdict(met)}' if goal else '|'} |")
        if not met:
            missed.append(f"{way}: without any waiting it would take {least:.2f} s")
    yield ""
    yield shortfall(missed)


def process_sentence(found):
    ratio = found["ratio"]
    return (f"{ratio:,.0f} times as fast (in processor time {found['ratio_of_processor_time']:,.0f} times; goal "
            f"{TIMES_PROCESSES}, {'met' if ratio >= TIMES_PROCESSES else 'not met'})")


def files_table(found):
    yield f"| {found['files']:,} files of {found['bytes']:,} bytes | s | times `cp -r` | goal | met |"
    yield "|---|---|---|---|---|"
    missed = []
    for way, taken in found["ways"].items():
        label = f"| {way} | {taken['seconds']:.2f} | {taken['ratio']:.2f}"
        if not way.endswith("--sync end"):
            yield f"{label} | | |"
            continue
        met = taken["ratio"] <= TIMES_CP
        yield f"{label} | {TIMES_CP} | {verdict(met)} |"
        if not met:
            missed.append(f"{way}: `cp` with one flush of its copies takes {found['ways']['cp + sync']['ratio']:.2f} "
                          f"times `cp`, the same without a flush {found['ways']['encrypt 3des --sync never']['ratio']:.2f}")
    yield ""
    yield shortfall(missed)


def python_table(found):
    yield "| cipher | C, µs a record | Python, µs | difference | goal | met |"
    yield "|---|---|---|---|---|---|"
    for row in found["rows"]:
        met = row["difference"] <= PYTHON_MICROSECONDS
        yield (f"| {row['cipher']} | {row['c']:.3f} | {row['python']:.3f} | +{row['difference']:.2f} | "
               f"+{PYTHON_MICROSECONDS} | {verdict(met)} |")


def databases_table(found):
    yield "| way | s | µs a row |"
    yield "|---|---|---|"
    for way, seconds in found["seconds"].items():
        yield f"| {way} | {seconds:.2f} | {seconds / found['rows'] * 1e6:.2f} |"
