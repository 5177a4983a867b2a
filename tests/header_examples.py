#!/usr/bin/env python3
"""Writes a test program out of the examples in the public headers.

    header_examples.py HEADER... --output FILE

An example is the text after the label Example, or the indented lines (five spaces after the slashes)
of a comment. Its lines are C++ statements and expressions. A comment at the end of a line is the
expected value of that line: of the expression, of the declared variable, of the object that is
called, or of a variable that is passed. tests/support/shown.h says how values are written.

Each example becomes one test. An example that begins with a function definition replaces a function
of the library, so it is left to the test of that function.
"""

import argparse
import pathlib
import re
import sys

COMMENT = re.compile(r"^ *///?(?P<text>.*)$")
LABEL = re.compile(r"^ (?P<label>Takes|Gives|Range|Fails|Cost|Like|Source|Example|Kept) +(?P<text>\S.*)$")
PROGRAM_LINE = re.compile(r"^ {5}(?P<text>\S.*)$")
CONTINUED_LINE = re.compile(r"^ {5,}(?P<text>\S.*)$")
FUNCTION_DEFINITION = re.compile(r"^\w[\w:<> ]* [\w:]+::\w+\(")
DECLARATION = re.compile(r"^(?:[A-Za-z_][\w:<>, ]*[\w>&*])\s+[&*]?(?P<name>[A-Za-z_]\w*)\s*[({=;]")


class Example:
    def __init__(self, header, line):
        self.header = header
        self.line = line
        self.lines = []


def examples_of(header):
    """Gives the examples of a header, each with the number of its first line."""
    found = []
    current = None
    kind = None  # of the example that is being read: "label" or "program"
    for number, line in enumerate(pathlib.Path(header).read_text().splitlines(), 1):
        comment = COMMENT.match(line)
        if comment is None:
            current = None
            continue
        text = comment["text"]
        label = LABEL.match(text)
        if label is not None:
            current = None
            if label["label"] == "Example":
                current, kind = Example(header, number), "label"
                current.lines.append(label["text"])
                found.append(current)
            else:
                kind = "other label"
                current = None
            in_label = True
            continue
        continued = CONTINUED_LINE.match(text)
        if current is not None and continued is not None:
            current.lines.append(continued["text"])
        elif PROGRAM_LINE.match(text):
            current, kind = Example(header, number), "program"
            current.lines.append(PROGRAM_LINE.match(text)["text"])
            found.append(current)
        else:
            current = None
    return found


def split_comment(line):
    """Splits a line into code and the comment at its end; a // inside a literal does not count."""
    quote = None
    i = 0
    while i < len(line):
        c = line[i]
        if quote is not None:
            if c == "\\":
                i += 1
            elif c == quote:
                quote = None
        elif c in "\"'":
            quote = c
        elif line.startswith("//", i):
            return line[:i].rstrip(), line[i + 2 :].strip()
        i += 1
    return line.rstrip(), None


def statements_of(lines):
    """Joins lines to statements: pairs of code and expected value or None."""
    code = ""
    for line in lines:
        part, expected = split_comment(line)
        code = f"{code} {part}".strip()
        if expected is not None or code.endswith((";", "{", "}")):
            yield code, expected
            code = ""
    if code:
        yield code, None


def objects_of(expression):
    """Names the variables that a call may have changed: its object, then its arguments."""
    names = re.findall(r"^\*?(\w+)\s*(?:\.|->|\[|\()", expression)
    inside = expression[expression.index("(") + 1 :] if "(" in expression else ""
    names = names if re.match(r"^\*?\w+\s*(\.|->|\[)", expression) else []
    names += re.findall(r"(?:^|,)\s*([A-Za-z_]\w*)\s*(?=[,)])", inside)
    unique = []
    for name in names:
        if name not in unique and name not in ("true", "false", "nullptr"):
            unique.append(name)
    return unique


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def test_of(example, number, directory):
    place = f"{pathlib.Path(example.header).relative_to(directory)}:{example.line}"
    stem = re.sub(r"\W", "_", pathlib.Path(example.header).stem)
    out = [f"// {place}", f"TEST(HeaderExamples, {stem}_{number}) {{"]
    checks = 0
    for code, expected in statements_of(example.lines):
        if expected is None:
            out.append(f"    {code}" if code.endswith((";", "{", "}")) else f"    static_cast<void>({code});")
            continue
        checks += 1
        declared = DECLARATION.match(code)
        expression = code.rstrip(";")
        if declared is not None and code.endswith(";"):
            out.append(f"    {code}")
            out.append(f"    EXPECT_SHOWN({quoted(place)}, {quoted(expected)}, {declared['name']});")
            continue
        shown = "".join(f", {name}" for name in objects_of(expression))
        out.append(f"    EXPECT_RESULT({quoted(place)}, {quoted(expected)}, ({expression}){shown});")
    out.append("}")
    if checks == 0:
        sys.exit(f"{place}: an example without an expected value")
    return "\n".join(out)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("headers", nargs="+", metavar="HEADER")
    parser.add_argument("--root", required=True, help="the folder that the headers are included from")
    parser.add_argument("--output", required=True)
    arguments = parser.parse_args()

    includes = [f"#include <{pathlib.Path(h).relative_to(arguments.root)}>" for h in arguments.headers]
    tests = []
    for header in arguments.headers:
        for number, example in enumerate(examples_of(header), 1):
            if not FUNCTION_DEFINITION.match(example.lines[0]):
                tests.append(test_of(example, number, arguments.root))
    pathlib.Path(arguments.output).write_text(
        "\n".join(
            [
                '#include "support/shown.h"',
                *includes,
                "",
                "using namespace com::halvorin::datatypes;",
                "using namespace com::halvorin::utilities;",
                "",
                "namespace {",
                "",
                "\n\n".join(tests),
                "",
                "}  // namespace",
                "",
            ]
        )
    )
    print(f"{len(tests)} examples of {len(arguments.headers)} headers")


if __name__ == "__main__":
    main()
