"""Reads the classes and their descriptions from the C++ headers."""
import dataclasses
import re

from reference.source import comment_text, read, require

# Below include/latchkey/.
HEADERS = {
    "clsMain": "cls_main.h",
    "clsCryptoAPI": "cls_crypto_api.h",
    "clsTimer": "cls_timer.h",
}


@dataclasses.dataclass
class Declaration:
    """A public member function, from a header."""
    text: str
    result: str
    parameters: list  # of (type, name, has a default)
    comment: str


@dataclasses.dataclass
class Description:
    """A class in a header: its comment, and its public members by name."""
    comment: str
    declarations: dict


def parse_declaration(text):
    """(result, name, parameters) of a member function, otherwise None."""
    plain = " ".join(text.replace("[[nodiscard]]", "").split())
    match = re.fullmatch(r"(?:static )?([\w:&<> ]+?) (\w+)\((.*)\)(?: const)?(?: noexcept)?;", plain)
    if not match:
        return None
    parameters = []
    for each in filter(None, match[3].split(", ")):
        declared, has_default, _ = each.partition(" = ")
        type_name, _, name = declared.rpartition(" ")
        parameters.append((type_name, name, bool(has_default)))
    return match[1], match[2], parameters


def parse_header(class_name):
    """A comment belongs to the declarations below it, up to an empty line or another comment."""
    require(class_name in HEADERS, f"where is the header of {class_name}?")
    text = read(f"include/latchkey/{HEADERS[class_name]}")
    start = re.search(rf"((?:^//[^\n]*\n)*)^class (?:LATCHKEY_API )?{class_name} {{\n(.*?)^}};", text, re.M | re.S)
    require(start is not None and start[1], f"{HEADERS[class_name]}: class {class_name} has no comment")
    declarations, comment, used, pending, public = {}, [], False, "", False
    for line in start[2].splitlines() + [""]:
        bare = line.strip()
        if bare in ("public:", "private:", "protected:"):
            public = bare == "public:"
        elif bare.startswith("//") and not pending:
            comment, used = [*([] if used else comment), bare], False
        elif not bare:
            comment = []
        else:
            pending += " " + bare
            if not pending.endswith((";", "}")):
                continue
            parsed = parse_declaration(pending)
            if public and parsed and f"{class_name}(" not in pending:
                result, name, parameters = parsed
                declarations.setdefault(name, []).append(
                    Declaration(" ".join(pending.split()), result, parameters, comment_text(comment)))
            pending, used = "", True
    return Description(comment_text(start[1].splitlines()), declarations)
