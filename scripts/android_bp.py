"""Reads Android.bp, as far as ours goes: properties that are texts, truths or lists of texts."""

import ast
import re


def read_modules(path):
    """Name of a module to its properties. "type" is the module's own, such as cc_test."""
    text = re.sub(r"^\s*//.*$", "", path.read_text(), flags=re.MULTILINE)
    modules = {}
    for kind, body in re.findall(r"^(\w+) (\{.*?^\})", text, flags=re.MULTILINE | re.DOTALL):
        literal = re.sub(r"^(\s*)(\w+):", r'\1"\2":', body, flags=re.MULTILINE)
        literal = re.sub(r": (true|false),$", lambda match: f": {match[1].title()},", literal, flags=re.MULTILINE)
        properties = ast.literal_eval(literal)
        modules[properties["name"]] = {"type": kind, **properties}
    return modules


def sources(modules, name):
    """The sources of a module, those of its filegroups included."""
    for source in modules[name].get("srcs", []):
        if source.startswith(":"):
            yield from sources(modules, source[1:])
        else:
            yield source
