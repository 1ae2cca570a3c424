"""The tables of docs/performance.md about many files, Python and databases."""
from verdicts import is_at_most, shortfall, verdict

TIMES_CP = 5
PYTHON_MICROSECONDS = 0.4  # above the C function


def files_table(found):
    yield f"| {found['files']:,} files of {found['bytes']:,} bytes | s | times `cp -r` | goal | met |"
    yield "|---|---|---|---|---|"
    missed = []
    for way, taken in found["ways"].items():
        label = f"| {way} | {taken['seconds']:.2f} | {taken['ratio']:.2f} ±{taken['spread']:.0%}"
        if not way.endswith("--sync end"):
            yield f"{label} | | |"
            continue
        met = is_at_most(taken["ratio"], TIMES_CP, taken["spread"])
        yield f"{label} | {TIMES_CP} | {verdict(met)} |"
        if not met:
            missed.append(f"{way}: `cp` with one flush of its copies takes {found['ways']['cp + sync']['ratio']:.2f} "
                          f"times `cp`, and encryption without a flush "
                          f"{found['ways']['encrypt 3des --sync never']['ratio']:.2f}")
    yield ""
    yield shortfall(missed)


def python_table(found):
    yield "| cipher | C, µs a record | Python, µs | difference | goal | met |"
    yield "|---|---|---|---|---|---|"
    missed = []
    for row in found["rows"]:
        met = row["difference"] <= PYTHON_MICROSECONDS
        if not met:
            missed.append(f"{row['cipher']}: +{row['difference']:.2f} µs")
        yield (f"| {row['cipher']} | {row['c']:.3f} | {row['python']:.3f} | +{row['difference']:.2f} | "
               f"+{PYTHON_MICROSECONDS} | {verdict(met)} |")
    yield ""
    yield shortfall(missed)


def databases_table(found):
    yield "| way | s | µs a row |"
    yield "|---|---|---|"
    for way, seconds in found["seconds"].items():
        yield f"| {way} | {seconds:.2f} | {seconds / found['rows'] * 1e6:.2f} |"
    yield ""
    yield (f"In PostgreSQL `latchkey_decrypt` takes {found['ratio']:.2f} of pgcrypto's time (goal: below 1, "
           f"{'met' if found['ratio'] < 1 else 'not met'}).")
