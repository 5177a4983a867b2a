#!/usr/bin/env python3
"""Checks that an editor has something to show at each declaration of the public headers.

    header_documentation.py --root FOLDER --compiler CLANG++ HEADER...

Walks clang's syntax tree of the headers. Each type, function, member function, constructor,
operator, public field and constant needs a /// comment of its own, and each function outside of a
class the label Fails. In the headers' text, labels come in one order. Prints what is missing, and
gives status 1 if anything is.
"""

import argparse
import json
import pathlib
import re
import subprocess
import sys

LABELS = ["Takes", "Gives", "Range", "Fails", "Cost", "Like", "Source", "Example", "Kept"]
FUNCTIONS = {
    "FunctionDecl",
    "CXXMethodDecl",
    "CXXConstructorDecl",
    "CXXDestructorDecl",
    "CXXConversionDecl",
}
DOCUMENTED = FUNCTIONS | {"CXXRecordDecl", "FieldDecl", "VarDecl", "TypeAliasDecl", "EnumDecl"}


def syntax_trees(arguments):
    """The trees of all namespaces that are called halvorin, one for each opening of it."""
    includes = "".join(
        f"#include <{pathlib.Path(header).relative_to(arguments.root)}>\n" for header in arguments.headers
    )
    command = [arguments.compiler, "-std=c++17", f"-I{arguments.root}", "-fsyntax-only", "-x", "c++", "-"]
    command += ["-Xclang", "-ast-dump=json", "-Xclang", "-ast-dump-filter=halvorin"]
    text = subprocess.run(command, input=includes, capture_output=True, text=True, check=True).stdout
    decoder = json.JSONDecoder()
    position = text.find("{")
    while position != -1:
        tree, end = decoder.raw_decode(text, position)
        yield tree
        position = text.find("{", end)


def comment_of(node):
    """The words of a declaration's own comment, or nothing."""
    words = []

    def gather(part):
        words.append(part.get("text", ""))
        for inner in part.get("inner", []):
            gather(inner)

    for part in node.get("inner", []):
        if part["kind"] == "FullComment":
            gather(part)
    return " ".join(words).strip()


def described(node, scope):
    signature = node.get("type", {}).get("qualType", "")
    return "::".join([*scope, node.get("name", "")]) + (f"  {signature}" if signature else "")


def check_declaration(node, scope, inside_class, complaints, comment=""):
    comment = comment_of(node) or comment
    if not comment:
        complaints.append(f"no comment of its own: {described(node, scope)}")
    elif node["kind"] in FUNCTIONS and not inside_class and "Fails" not in comment:
        complaints.append(f"no Fails: {described(node, scope)}")


def walk(node, scope, inside_class, complaints, count):
    access = "private" if node.get("tagUsed") == "class" else "public"
    for inner in node.get("inner", []):
        kind = inner["kind"]
        if kind == "AccessSpecDecl":
            access = inner["access"]
        if access != "public" or inner.get("isImplicit") or inner.get("explicitlyDeleted"):
            continue
        if kind == "NamespaceDecl":
            walk(inner, [*scope, inner["name"]], False, complaints, count)
        elif kind == "FunctionTemplateDecl":
            count[0] += 1
            pattern = next(part for part in inner["inner"] if part["kind"] in FUNCTIONS)
            check_declaration(pattern, scope, inside_class, complaints, comment_of(inner))
        elif kind in DOCUMENTED and (kind != "CXXRecordDecl" or inner.get("completeDefinition")):
            count[0] += 1
            check_declaration(inner, scope, inside_class, complaints)
            if kind == "CXXRecordDecl":
                walk(inner, [*scope, inner.get("name", "")], True, complaints, count)


def check_labels(header, complaints):
    """Labels of one comment come in order, and each of them once."""
    last = -1
    for number, line in enumerate(pathlib.Path(header).read_text().splitlines(), 1):
        comment = re.match(r"^ *///?( (?P<label>[A-Z][a-z]+)  +\S)?", line)
        if comment is None:
            last = -1
        elif comment["label"] in LABELS:
            place = LABELS.index(comment["label"])
            if place <= last:
                complaints.append(f"{header}:{number}: {comment['label']} comes after {LABELS[last]}")
            last = place


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("headers", nargs="+", metavar="HEADER")
    parser.add_argument("--root", required=True, help="the folder that the headers are included from")
    parser.add_argument("--compiler", default="clang++")
    arguments = parser.parse_args()

    complaints = []
    count = [0]
    for tree in syntax_trees(arguments):
        walk(tree, [tree["name"]], False, complaints, count)
    for header in arguments.headers:
        check_labels(header, complaints)
    if count[0] == 0:
        complaints.append("no declaration was found")
    print(*complaints, f"{count[0]} declarations, {len(complaints)} complaints", sep="\n")
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()
