"""The failures, read from diagnostics/failure_table.h, include/latchkey/fault.h and base/faults.cpp."""
import dataclasses
import re

from reference.source import comment_text, read, require


@dataclasses.dataclass
class Site:
    location: int
    operation: str
    number: int | None = None  # None: an operation's trap
    text: str = ""


@dataclasses.dataclass
class Fault:
    name: str
    number: int
    description: str


def parse_sites():
    """The comment of the table, and its sites by location."""
    text = read("diagnostics/failure_table.h")
    sites = []
    for kind, values in re.findall(r"inline constexpr (Trap|Check)Site \w+\s*\{(.*?)\};", text, re.S):
        numbers = [int(each) for each in re.findall(r"\b\d+\b", re.sub(r'"[^"]*"', "", values))]
        texts = re.findall(r'u"([^"]*)"', values)
        require((len(numbers), len(texts)) == ((1, 1) if kind == "Trap" else (2, 2)),
                f"failure_table.h: cannot read {values}")
        sites.append(Site(numbers[0], texts[-1], *numbers[1:], *texts[:-1]))
    require(sites and len({site.location for site in sites}) == len(sites), "failure_table.h: no valid table")
    comment = comment_text(re.match(r"(//.*\n)+", text)[0].splitlines())
    return comment, {site.location: site for site in sorted(sites, key=lambda site: site.location)}


def parse_faults():
    numbers = re.search(r"enum class FaultNumber[^{]*\{(.*?)\};", read("include/latchkey/fault.h"), re.S)[1]
    descriptions = dict(re.findall(r'case FaultNumber::(\w+):\s*return u"([^"]*)";', read("base/faults.cpp")))
    faults = [Fault(name, int(number), descriptions.get(name, ""))
              for name, number in re.findall(r"(\w+) = (\d+)", numbers)]
    require(faults and all(fault.description for fault in faults), "faults.cpp: a fault has no description")
    return faults
