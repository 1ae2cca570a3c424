"""The tables of docs/performance.md about the component: overhead, hexadecimal, memory, COM calls, growth."""
from verdicts import is_at_most, shortfall, verdict

EARLY_BOUND_NANOSECONDS = 100  # above a virtual call
LATE_BOUND_NANOSECONDS = 2000
FIRST_FLAT = 1 << 16
FLAT = 1.10
SALT_WALKS = 1 / 3
COPY = "(copying a text)"


def component_table(rates):
    yield "| workload | component, ns | alone, ns | ratio or difference | goal | met |"
    yield "|---|---|---|---|---|---|"
    missed = []
    own_rows = [name for name in rates.rows if "/component/" in name and not name.startswith(("hex/", "salt/"))]
    for name in sorted(own_rows, key=row_order):
        operation, algorithm, _, length = name.split("/")
        alone = name.replace("/component/", "/raw/")
        own, raw = rates.nanoseconds(name), rates.nanoseconds(alone)
        work = f"{operation} {algorithm}, {int(length):,} bytes"
        label = f"{work} | {own:.0f} | {raw:.0f}"
        if int(length) < 1000:
            more = rates.rows[name]["allocations"] - rates.rows[alone]["allocations"]
            met = own - raw <= 1000
            yield f"| {label} | {own - raw:+.0f} ns, {more:+.0f} allocations | +1000 ns | {verdict(met)} |"
        else:
            goal = 1.25 if algorithm == "rc4" or operation == "hash" else 1.10
            met = own / raw <= goal
            yield f"| {label} | {own / raw:.2f} | {goal:.2f} | {verdict(met)} |"
        if not met:
            missed.append(f"{work}: {(own - raw) / int(length):.2f} ns a byte more than the calls; the two vary by "
                          f"±{rates.spreads[name]:.0%} and ±{rates.spreads[alone]:.0%}")
    yield ""
    yield shortfall(missed)


def salt_table(rates):
    salt, walks = "salt/component/20", "salt/walks/20"
    own, all_walks = rates.nanoseconds(salt) / 1000, rates.nanoseconds(walks) / 1000
    ratio, spread = own / all_walks, max(rates.spreads[salt], rates.spreads[walks])
    yield "| `CreateSaltValue(20, True)`, µs | 20 reads of `/proc`, µs | ratio | goal | met |"
    yield "|---|---|---|---|---|"
    met = is_at_most(ratio, SALT_WALKS, spread)
    yield f"| {own:.0f} | {all_walks:.0f} | {ratio:.2f} ±{spread:.0%} | {SALT_WALKS:.2f} | {verdict(met)} |"


def row_order(name):
    operation, algorithm, _, length = name.split("/")
    return int(length), operation == "hash", algorithm, operation != "encrypt"


def hex_table(kept, new):
    """The times with memory kept by the program (`kept`), and with new pages for each result (`new`)."""
    yield ("| workload | component, ms | table loop, ms | times as fast (goal 8) | met | copying, ms | "
           "in copies (goal 2.5) | met | an eighth of the loop, in copies |")
    yield "|---|---|---|---|---|---|---|---|---|"
    missed = []
    for rates, length, size in ((kept, 32 << 10, "64 KiB"), (kept, 16 << 20, "32 MiB"),
                                (new, 16 << 20, "32 MiB, new pages")):
        for way, member in (("to", "ConvertStringToHex"), ("from", "ConvertStringFromHex")):
            own, loop, copy = (rates.nanoseconds(f"hex/{way}/{who}/{length}") / 1e6
                               for who in ("component", "table", "copy"))
            label = f"`{member}`, {size}"
            faster, copies, eighth = loop / own, own / copy, loop / 8 / copy
            yield (f"| {label} | {own:.4g} | {loop:.4g} | {faster:.2f} | {verdict(faster >= 8)} | {copy:.4g} | "
                   f"{copies:.2f} | {verdict(copies <= 2.5)} | {eighth:.2f} |")
            if faster < 8 or copies > 2.5:
                missed.append(f"{label}: {hex_limit(copies, eighth)}")
    yield ""
    yield shortfall(missed)


def hex_limit(copies, eighth):
    figures = f"an eighth of the loop is {eighth:.2f} copies, and it takes {copies:.2f}"
    if eighth < 1 <= copies:
        return f"{figures}: moving the bytes alone takes {1 / eighth:.1f} times as long as the goal allows"
    if eighth < 1:
        return f"{figures}: faster than the copy, which takes {1 / eighth:.1f} times as long as the goal allows"
    return f"{figures}: the conversion costs more than moving the bytes"


def memory_table(peaks):
    yield "| bytes | peak over the empty object | of 4n + 1 MiB | met |"
    yield "|---|---|---|---|"
    for length, found in peaks.items():
        share = max(found) / (4 * int(length) + (1 << 20))
        yield f"| {int(length):,} | {max(found):,} | {share:.2f} | {verdict(share <= 1)} |"


def com_table(calls):
    yield ("| client | virtual call, ns | early-bound call, ns | "
           f"within {EARLY_BOUND_NANOSECONDS} ns of the virtual one | `GetIDsOfNames`, ns | `Invoke`, ns | "
           "each within 2 µs |")
    yield "|---|---|---|---|---|---|---|"
    for arch, row in calls.items():
        named, invoked = row["GetIDsOfNames"], row["Invoke"]
        yield (f"| {arch}, {row['compiler']}, Wine {row['wine']} | {row['virtual']:.1f} | {row['early']:.1f} | "
               f"{verdict(row['early'] - row['virtual'] <= EARLY_BOUND_NANOSECONDS)} | {named:.0f} | {invoked:.0f} | "
               f"{verdict(max(named, invoked) <= LATE_BOUND_NANOSECONDS)} |")


class Growth:
    """An operation's time for each byte, character or digit at the first length that counts and at the largest."""

    def __init__(self, rates, operation):
        lengths = [int(name.split("/")[2]) for name in rates.rows if name.split("/")[1] == operation]
        self.largest = max(lengths)
        self.at_first, self.at_largest = (rates.nanoseconds(f"growth/{operation}/{length}") / length
                                          for length in (FIRST_FLAT, self.largest))
        self.ratio = self.at_largest / self.at_first
        self.unit = rates.rows[f"growth/{operation}/{FIRST_FLAT}"]["label"]
        self.at_zero = f"{rates.nanoseconds(f'growth/{operation}/0'):.0f}" if 0 in lengths else "refused"

    def added(self):
        return self.at_largest - self.at_first

    def verdict(self, copy):
        if self.ratio <= FLAT:
            return "flat"
        return "as a copy" if self.ratio <= copy.ratio else "no"


def growth_table(rates):
    yield ("| operation | counted in | of 0, ns | each of 65,536, ns | each of the largest, ns | largest | ratio | "
           "in line |")
    yield "|---|---|---|---|---|---|---|---|"
    copy = Growth(rates, COPY)
    missed = []
    for operation in sorted({name.split("/")[1] for name in rates.rows}):
        row = Growth(rates, operation)
        if row.verdict(copy) == "no":
            missed.append(f"{operation}: {row.ratio:.2f}, where a copy has {copy.ratio:.2f}; that is "
                          f"{row.added():.3f} ns more for each, where a copied character takes {copy.added():.3f} more")
        yield (f"| {operation} | {row.unit} | {row.at_zero} | {row.at_first:.3g} | {row.at_largest:.3g} | "
               f"{row.largest:,} | {row.ratio:.2f} | {row.verdict(copy)} |")
    yield ""
    yield shortfall(missed)
