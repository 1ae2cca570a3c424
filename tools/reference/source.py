"""Reads the sources, and reports contradictions between them."""
import pathlib
import re

PROJECT = pathlib.Path(__file__).resolve().parent.parent.parent


class Disagreement(Exception):
    """The sources contradict each other, or lack something."""


def require(condition, message):
    if not condition:
        raise Disagreement(message)


def read(path):
    return (PROJECT / path).read_text(encoding="utf-8")


def comment_text(lines):
    """Paragraphs, each on one line, with blank lines between."""
    paragraphs = re.split(r"\n\n+", "\n".join(line.strip().removeprefix("//").strip() for line in lines))
    return "\n\n".join(" ".join(paragraph.split()) for paragraph in paragraphs if paragraph.strip())
