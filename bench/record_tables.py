"""The tables of docs/performance.md about records: batches next to OpenSSL, and rows of `latchkey records`."""
from processor import processor_time
from verdicts import is_at_least, shortfall, verdict

BATCH_GOALS = {"avx512": 8, "avx2": 5}  # times as fast as OpenSSL, by level: block ciphers
RC4_GOAL = 20
CALL_GOAL = 1.3  # times OpenSSL's loop, one call for each record
ROWS_GOAL = 1_000_000  # rows a second
PROCESSES_GOAL = 500  # times as fast as a process for each row


def goal_of(row, level):
    return RC4_GOAL if row["cipher"] == "rc4" else BATCH_GOALS.get(level)


def batch_table(reports):
    """`reports` maps the level of the kernels to the output of record_bench."""
    yield "| workload | kernels | OpenSSL, ns | one call, ns | batch, ns | OpenSSL / batch | goal | met |"
    yield "|---|---|---|---|---|---|---|---|"
    missed = []
    for level, report in reports.items():
        for row in report["rows"]:
            label, ratio, spread = f"{row['cipher'].upper()} {row['direction']}", row["ratio"], row["spread"]
            goal = goal_of(row, level)
            met = goal is None or is_at_least(ratio, goal, spread)
            if not met:
                missed.append(f"{label}, {level}: {ratio:.2f} ±{spread:.0%} of {goal}, {row['batch']:.0f} ns for a record")
            yield (f"| {label} | {level} | {row['openssl']:.0f} | {row['call']:.0f} | {row['batch']:.1f} | "
                   f"{ratio:.1f} ±{spread:.0%} | {goal or 'none'} | {verdict(met) if goal else ''} |")
    yield ""
    yield shortfall(missed)
    yield ""
    slowest = max(row["call"] / row["openssl"] for report in reports.values() for row in report["rows"])
    yield (f"One call takes at most {slowest:.2f} times OpenSSL's time for a record (goal {CALL_GOAL}, "
           f"{'met' if slowest <= CALL_GOAL else 'not met'}).")


def row_table(found):
    yield "| workload | seconds | user + system | rows a second | goal | met |"
    yield "|---|---|---|---|---|---|"
    missed = []
    for way, taken in found["ways"].items():
        rate, spread = found["rows"] / taken["seconds"], taken["spread"]
        goal = ROWS_GOAL if way == "decrypt csv" else None
        met = goal is None or is_at_least(rate, goal, spread)
        if not met:
            missed.append(f"{way}: {rate:,.0f} ±{spread:.0%} rows a second of {goal:,}; {processor_time(taken):.2f} s of "
                          f"processor time on {found['processors']} processors")
        yield (f"| {way} | {taken['seconds']:.2f} ±{spread:.0%} | {taken['user']:.2f} + {taken['system']:.2f} | "
               f"{rate:,.0f} | {f'{goal:,}' if goal else 'none'} | {verdict(met) if goal else ''} |")
    yield ""
    yield shortfall(missed)


def process_sentence(found):
    ratio = found["ratio"]
    return (f"{ratio:,.0f} times as fast (in processor time {found['ratio_of_processor_time']:,.0f} times; goal "
            f"{PROCESSES_GOAL}, {'met' if ratio >= PROCESSES_GOAL else 'not met'})")
