"""Checks that the sources agree, so that one document can describe all of them."""
import re

from reference.interface_definition import TYPES
from reference.source import Disagreement, require

BANDS = ("401 to 451", "700 to 761")  # ranges of location numbers, which are not locations themselves


def named_locations(comment):
    """The locations that a comment names, singly or as `from to`."""
    for band in BANDS:
        comment = comment.replace(band, "")
    named = set()
    for first, last in re.findall(r"\b([47]\d\d)\b(?: to ([47]\d\d)\b)?", comment):
        named.update(range(int(first), int(last or first) + 1))
    return named


def declaration_of(member, declarations):
    wanted = [argument.name for argument in member.arguments]
    for declaration in declarations.get(member.name, []):
        if [name for _, name, _ in declaration.parameters] == wanted:
            return declaration
    raise Disagreement(f"{member.name}: the header has no such member with the arguments {wanted}")


def check_types(member, declaration):
    require(declaration.result == TYPES[member.result].result, f"{member.name}: the results differ")
    for argument, (type_name, name, has_default) in zip(member.arguments, declaration.parameters):
        require(type_name in TYPES[argument.type].arguments, f"{member.name}: the types of {name} differ")
        require((argument.default is not None) == has_default, f"{member.name}: {name} is optional in one place only")


def check_comment(member, declaration, sites):
    comment = declaration.comment
    require(comment, f"{member.name} has no comment in its header")
    if len(member.arguments) > 1:
        for argument in member.arguments:
            require(re.search(rf"\b{argument.name}\b", comment),
                    f"{member.name}: its comment does not describe {argument.name}")
    named = named_locations(comment)
    unknown = sorted(named - set(sites))
    require(not unknown, f"{member.name}: its comment names locations that do not exist: {unknown}")
    own = {location for location, site in sites.items() if site.operation in (member.name, f"{member.name}Data")}
    require(own <= named, f"{member.name}: its comment does not name the locations {sorted(own - named)}")


def check_fault_names(comment, faults):
    numbers = {fault.name: fault.number for fault in faults}
    for name, number in re.findall(rf"\b({'|'.join(numbers)}) \((\d+)\)", comment):
        require(numbers[name] == int(number), f"{name} is {numbers[name]}, not {number} as in a comment")


def check_class(interface, description, sites, faults):
    """Raises Disagreement unless the header declares and describes the members of the interface definition."""
    undefined = sorted(set(description.declarations) - {member.name for member in interface.members})
    require(not undefined, f"{interface.class_name}: not in the interface definition: {undefined}")
    check_fault_names(description.comment, faults)
    for member in interface.members:
        declaration = declaration_of(member, description.declarations)
        check_types(member, declaration)
        check_comment(member, declaration, sites)
        check_fault_names(declaration.comment, faults)
