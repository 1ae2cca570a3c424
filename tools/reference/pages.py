"""Writes the two documents as Markdown."""
import pathlib
import re
import textwrap

from reference.agreement import declaration_of, named_locations
from reference.headers import HEADERS
from reference.interface_definition import TYPES

REFERENCE_START = """\
# Reference

Every member of every class, in the order of the interfaces. This file is made by `tools/make_reference` from the
interface definition, the headers and the failure table: change those, not this.

The same names serve COM clients and C++ (namespace `latchkey`). These types correspond to each other:

| Visual Basic | interface definition | C++ | contents |
|---|---|---|---|
| `Integer` | `short` | `std::int16_t` | a signed 16-bit number |
| `Long` | `long` | `std::int32_t` | a signed 32-bit number |
| `Boolean` | `VARIANT_BOOL` | `bool` | for COM 16 bits: -1 is True, 0 is False, any other value counts as True |
| `String` | `BSTR` | `Text`, `TextView` | 16-bit characters; lengths are in characters |
| `Byte()` | `SAFEARRAY(unsigned char)` | `ByteArray` | bytes; zero-based and of one dimension |
| `Variant` | `VARIANT` | `Variant`, `Text` | a value of any type; as a result always a text |

An omitted optional argument has the value in its table. An argument passed by reference is only read, unless its
description says that it is changed.

An operation *records* a failure: it returns its failure value and writes the thread's error record, which `clsMain`
shows. The tables give the location numbers; [errors.md](errors.md) explains the record and lists them all. A member
that *raises* a fault reports it to its caller: a COM client gets the HRESULT 800A0000 (hexadecimal) plus the fault's
number and its description as error information, a C++ client the exception `latchkey::Fault`. A COM client that passes
an array whose elements are not bytes gets TypeMismatch (13).
"""

ENUMS_START = """\
The type library has names for the numbers that members take and return. A client that refers to it writes
`latchkeyHashSHA1` for 4; the members still take 16-bit integers.
"""

# The section about storing ciphertexts, included unchanged.
STORING = pathlib.Path(__file__).with_name("storing.md")

ERRORS_START = """\
# Errors

Every number that the component reports. This file is made by `tools/make_reference` from `diagnostics/failure_table.h`
and `include/latchkey/fault.h`: change those, not this.

Test `ErrorExists` first: an operation clears the record when it starts, but that keeps `ErrorLocationID` and both
error numbers of the previous failure. Then `ErrorType` shows which fields belong to the last failure: 1 for a run-time
failure (`ErrorLocationID`, `RTErrorNumber`, `RTErrorDescription`), 2 for an application failure (`ErrorLocationID`,
`AppErrorNumber`, `AppErrorDescription`). A later failure overwrites an earlier one.
"""

FAULTS_START = """\
`RTErrorNumber` and `RTErrorDescription` of a run-time failure, and the faults that a member without a trap raises.
"""


def wrapped(text):
    """Wraps prose to 100 columns; headings and tables are unchanged."""
    return "\n\n".join(
        part if part.startswith(("#", "|")) else
        textwrap.fill(part, 100, break_long_words=False, break_on_hyphens=False)
        for part in text.strip().split("\n\n"))


def prose(comment, names):
    """A comment as Markdown: plain text, except for names set as code."""
    escaped = re.sub(r"([*<|\\])", r"\\\1", comment)
    return wrapped(re.sub(rf"\b({'|'.join(sorted(names))})\b", r"`\1`", escaped))


def table(head, rows):
    lines = [head, ["---"] * len(head), *rows]
    return "\n".join("| " + " | ".join(map(str, line)) + " |" for line in lines)


def default_of(argument):
    return "False" if argument.type == "VARIANT_BOOL" else argument.default


def visual_basic_argument(argument):
    type_name = TYPES[argument.type].visual_basic
    passed = "" if argument.by_reference else "ByVal "
    if type_name == "Byte()":
        return f"{passed}{argument.name}() As Byte"
    declared = f"{passed}{argument.name} As {type_name}"
    return declared if argument.default is None else f"[{declared} = {default_of(argument)}]"


def visual_basic(member):
    keyword = {"propget": "Property Get", "propput": "Property Let"}.get(
        member.kind, "Function" if member.result else "Sub")
    head = f"{keyword} {member.name}("
    arguments = [visual_basic_argument(argument) for argument in member.arguments]
    tail = f") As {TYPES[member.result].visual_basic}" if member.result else ")"
    line = head + ", ".join(arguments) + tail
    return line if len(line) <= 96 else f"{head} _\n    " + ", _\n    ".join(arguments) + tail


def cpp(declaration):
    line = declaration.text.replace("[[nodiscard]] ", "")
    head, _, arguments = line.partition("(")
    return line if len(line) <= 96 else f"{head}(\n    " + arguments.replace(", ", ",\n    ")


def argument_table(member):
    return table(("argument", "type", "passed", "if omitted"), [
        (f"`{argument.name}`", f"`{TYPES[argument.type].visual_basic}`",
         "by reference" if argument.by_reference else "by value",
         "required" if argument.default is None else f"`{default_of(argument)}`")
        for argument in member.arguments
    ])


def failure_table(locations, sites):
    return table(("`ErrorLocationID`", "`ErrorType`", "number", "text"), [
        (site.location, "1, run-time", "the fault's", "the fault's") if site.number is None else
        (site.location, "2, application", site.number, site.text)
        for site in (sites[location] for location in sorted(locations))
    ])


def direction_section(member, declaration, sites, names):
    parts = [f"```vb\n{visual_basic(member)}\n```", f"```cpp\n{cpp(declaration)}\n```",
             wrapped(f"Help text: “{member.help}”")]
    if member.arguments:
        parts.append(argument_table(member))
    parts.append(prose(declaration.comment, names))
    locations = named_locations(declaration.comment)
    return parts + (["Records:", failure_table(locations, sites)] if locations else [])


def member_section(directions, declarations, sites, names):
    """A method, or a property with its directions."""
    first = directions[0]
    kind = {"method": "Method", "propget": "Property, read", "propput": "Property, write"}[first.kind]
    more = " and write" if len(directions) > 1 else ""
    parts = [f"### {first.name}", f"{kind}{more}. Dispatch number {first.id}."]
    for member in directions:
        parts += direction_section(member, declaration_of(member, declarations), sites, names)
    return parts


def class_section(interface, description, sites, names):
    parts = [f"## {interface.class_name}", interface.help, prose(description.comment, names),
             table(("", ""), [("ProgID", f"`{interface.prog_id}`"),
                              ("CLSID", f"`{{{interface.class_id}}}`"),
                              ("interface", f"`_{interface.class_name}`, `{{{interface.interface_id}}}`"),
                              ("header", f"`<latchkey/{HEADERS[interface.class_name]}>`")])]
    directions = {}
    for member in interface.members:
        directions.setdefault(member.name, []).append(member)
    for members in directions.values():
        parts += member_section(members, description.declarations, sites, names)
    return parts


def code_names(interfaces, sites, faults):
    """Names that are set as code in prose. None of them is an English word."""
    names = {fault.name for fault in faults} | {site.operation for site in sites.values()} | set(HEADERS)
    for interface in interfaces:
        for member in interface.members:
            names |= {member.name, *(argument.name for argument in member.arguments)}
    return {name for name in names if re.search("[a-z][A-Z]", name)}


def enum_sections(enums, names):
    parts = ["## Names of numbers", wrapped(ENUMS_START)]
    for enum in enums:
        parts += [f"### {enum.name}", prose(enum.help, names),
                  table(("name", "value"), [(f"`{name}`", value) for name, value in enum.constants])]
    return parts


def reference_page(interfaces, enums, descriptions, sites, faults):
    names = code_names(interfaces, sites, faults)
    parts = [wrapped(REFERENCE_START), STORING.read_text(encoding="utf-8").strip(), *enum_sections(enums, names)]
    for interface in interfaces:
        parts += class_section(interface, descriptions[interface.class_name], sites, names)
    return "\n\n".join(parts) + "\n"


def check_tables(sites):
    checks = [site for site in sites.values() if site.number is not None]
    locations = {}
    for site in checks:
        locations.setdefault((site.number, site.text), []).append(str(site.location))
    return ["## Checks: ErrorType 2",
            table(("`ErrorLocationID`", "`AppErrorNumber`", "`AppErrorDescription`", "operation"),
                  [(site.location, site.number, site.text, site.operation) for site in checks]),
            "## Error numbers of the checks",
            table(("`AppErrorNumber`", "`AppErrorDescription`", "locations"),
                  [(number, text, ", ".join(found)) for (number, text), found in sorted(locations.items())])]


def trap_tables(sites, faults):
    return ["## Traps: ErrorType 1",
            table(("`ErrorLocationID`", "operation"),
                  [(site.location, site.operation) for site in sites.values() if site.number is None]),
            "## Run-time faults", wrapped(FAULTS_START),
            table(("`RTErrorNumber`", "`RTErrorDescription`", "HRESULT when raised", "in C++"),
                  [(fault.number, fault.description, f"{0x800A0000 + fault.number:08X}", f"`FaultNumber::{fault.name}`")
                   for fault in faults])]


def errors_page(interfaces, comment, sites, faults):
    names = code_names(interfaces, sites, faults)
    rules = comment.partition("\n\n")[2]  # the first paragraph describes the header
    parts = [wrapped(ERRORS_START), prose(rules, names), *check_tables(sites), *trap_tables(sites, faults)]
    return "\n\n".join(parts) + "\n"
