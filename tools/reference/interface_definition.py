"""The classes and members for COM clients, read from com/windows/latchkey.idl."""
import dataclasses
import re

from reference.source import read, require


@dataclasses.dataclass
class Type:
    visual_basic: str
    arguments: set  # the C++ types for an argument
    result: str  # the C++ type for a result


TYPES = {
    "short": Type("Integer", {"std::int16_t"}, "std::int16_t"),
    "long": Type("Long", {"std::int32_t"}, "std::int32_t"),
    "BSTR": Type("String", {"TextView"}, "Text"),
    "VARIANT_BOOL": Type("Boolean", {"bool"}, "bool"),
    "VARIANT": Type("Variant", {"const Variant&"}, "Text"),
    "SAFEARRAY(unsigned char)": Type("Byte()", {"ByteArray&", "const ByteArray&"}, "ByteArray"),
    "": Type("", set(), "void"),
}


# Characters with a meaning in the definition, and their substitutes in a text while it is read.
MASKED = str.maketrans("[]()/", "\uE000\uE001\uE002\uE003\uE004")
PLAIN = str.maketrans("\uE000\uE001\uE002\uE003\uE004", "[]()/")


@dataclasses.dataclass
class Argument:
    name: str
    type: str
    by_reference: bool
    default: str | None  # None: required


@dataclasses.dataclass
class Member:
    """A method, or one direction of a property, from the interface definition."""
    name: str
    kind: str  # method, propget or propput
    id: int
    help: str
    arguments: list
    result: str


@dataclasses.dataclass
class Interface:
    class_name: str
    class_id: str
    interface_id: str
    prog_id: str
    help: str
    members: list


@dataclasses.dataclass
class Enum:
    name: str
    help: str
    constants: list  # of (name, value)


@dataclasses.dataclass
class Library:
    name: str
    id: str
    version: str


def parse_arguments(text):
    """The arguments, and the type of the result or the empty text."""
    arguments, result = [], ""
    for attributes, declaration in re.findall(r"\[([^\]]*)\]\s*([^\[\]]+?)(?=,\s*\[|\s*$)", text):
        type_name, pointer, name = re.fullmatch(r"(.+?) ?(\*?)(\w+)", declaration).groups()
        require(type_name in TYPES, f"latchkey.idl: unknown type {type_name}")
        default = re.search(r"defaultvalue\(([^)]*)\)", attributes)
        if "retval" in attributes:
            result = type_name
        else:
            arguments.append(Argument(name, type_name, bool(pointer), default and default[1]))
    return arguments, result


def attribute(attributes, name):
    """The text between the parentheses of an attribute, without quotation marks."""
    value = re.search(rf"\b{name}\(([^)]*)\)", attributes)
    return value and value[1].strip('"').translate(PLAIN)


def parse_members(body):
    members = []
    for attributes, name, arguments in re.findall(r"\[([^\]]*)\]\s*HRESULT (\w+)\((.*?)\);", body, re.S):
        kind = re.search(r"\bprop(get|put)\b", attributes)
        help_text = attribute(attributes, "helpstring")
        require(help_text, f"latchkey.idl: {name} has no help text")
        members.append(Member(name, kind[0] if kind else "method", int(attribute(attributes, "id")), help_text,
                              *parse_arguments(arguments)))
    require(len(members) == body.count("HRESULT"), "latchkey.idl: some members cannot be read")
    return members


def read_definition():
    # Masks brackets and parentheses in texts, so that they are not mistaken for those of the definition.
    text = re.sub(r'"[^"]*"', lambda match: match[0].translate(MASKED), read("com/windows/latchkey.idl"))
    return re.sub(r"//.*", "", text)


def parse_library():
    attributes, name = re.search(r"\[([^\]]*)\]\s*library (\w+)", read_definition()).groups()
    return Library(name, attribute(attributes, "uuid"), attribute(attributes, "version"))


def parse_enums():
    """The names that the type library gives to numbers."""
    found = re.findall(r"\[([^\]]*)\]\s*typedef enum (\w+) \{(.*?)\}", read_definition(), re.S)
    enums = [Enum(name, attribute(attributes, "helpstring"), re.findall(r"(\w+) = (\d+)", body))
             for attributes, name, body in found]
    require(enums and all(enum.help and enum.constants for enum in enums), "latchkey.idl: an enum cannot be read")
    return enums


def parse_interfaces():
    text = read_definition()
    library = parse_library().name
    bodies = {
        name: (attributes, body) for attributes, name, body in re.findall(
            r"\[([^\]]*)\]\s*interface (\w+) : IDispatch \{(.*?)\n  \}", text, re.S)
    }
    classes = re.findall(r"\[([^\]]*)\]\s*coclass (\w+) \{\s*\[default\] interface (\w+);", text)
    require(len(bodies) == len(classes) > 0, "latchkey.idl: not one interface for each class")
    return [
        Interface(name, attribute(attributes, "uuid"), attribute(bodies[interface][0], "uuid"), f"{library}.{name}",
                  attribute(attributes, "helpstring"), parse_members(bodies[interface][1]))
        for attributes, name, interface in classes
    ]
