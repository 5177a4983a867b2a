#!/usr/bin/env python3
"""Prepares a file of the project for Doxygen, which calls this program as its input filter.

    filter.py FILE

Headers: a label of a contract becomes a headed paragraph, an example a block of code, a name after
"Kept" a link. Pages: the entries of kept.md get names to link to, and pictures, which
Doxygen does not know, become plain images.
"""

import pathlib
import re
import sys

LABEL = re.compile(r"^(?P<indent> *)/// (?P<label>Takes|Gives|Range|Fails|Cost|Like|Source|Example|Kept) +(?P<text>\S.*)$")
CONTINUED = re.compile(r"^ *///(?P<space> {9,})(?P<text>\S.*)$")
PROGRAM = re.compile(r"^(?P<indent> *)/// {5}(?P<text>.*\S.*)$")
PICTURE = re.compile(
    r'<picture>.*?srcset="[^"]*?(?P<dark>[^/"]+)".*?src="[^"]*?(?P<light>[^/"]+)".*?alt="(?P<alt>[^"]*)".*?</picture>',
    re.DOTALL,
)
EMPTY = re.compile(r"^ *///$")


def kept_links(text):
    """Each name becomes a link to its entry."""
    return re.sub(r"[a-z0-9]+(?:-[a-z0-9]+)+", lambda name: f'@ref kept-{name[0]} "{name[0]}"', text)


def prepare_header(lines):
    out = []
    i = 0
    while i < len(lines):
        label = LABEL.match(lines[i])
        program = PROGRAM.match(lines[i])
        if label is not None:
            indent, name = label["indent"], label["label"]
            words = [label["text"]]
            i += 1
            while i < len(lines):
                continued = CONTINUED.match(lines[i])
                if continued is not None:
                    words.append(continued["text"])
                elif EMPTY.match(lines[i]) and i + 1 < len(lines) and CONTINUED.match(lines[i + 1]):
                    words.append("")
                else:
                    break
                i += 1
            out.append(f"{indent}/// @par {name}")
            if name == "Example":
                words = ["@code{.cpp}", *words, "@endcode"]
            if name == "Kept":
                words = [kept_links(word) for word in words]
            out += [f"{indent}/// {word}".rstrip() for word in words]
        elif program is not None:
            indent = program["indent"]
            out.append(f"{indent}/// @code{{.cpp}}")
            while i < len(lines) and PROGRAM.match(lines[i]):
                out.append(f"{indent}/// {PROGRAM.match(lines[i])['text']}")
                i += 1
            out.append(f"{indent}/// @endcode")
        else:
            out.append(lines[i])
            i += 1
    return name_file(open_namespace_std(out))


def open_namespace_std(lines):
    """Doxygen does not find the scope of `struct std::hash<...>`; it does in an open namespace."""
    out = []
    inside = False
    for line in lines:
        specialisation = re.match(r"^struct std::(?P<rest>.*)$", line)
        if specialisation is not None:
            inside = True
            # The comment and `template <>` above belong into the namespace, too.
            start = len(out)
            while re.match(r"^(///|template)", out[start - 1]):
                start -= 1
            out.insert(start, "namespace std {")
            line = f"struct {specialisation['rest']}"
        out.append(line)
        if inside and line == "};":
            out.append("}")
            inside = False
    return out


def name_file(lines):
    """The first // comment describes the file; Doxygen wants it said."""
    out = []
    state = "before"
    for line in lines:
        if state == "before" and re.match(r"^//( |$)", line):
            out.append("/// @file")
            state = "inside"
        if state == "inside" and re.match(r"^//( |$)", line):
            line = "/" + line
        elif state == "inside":
            state = "after"
        out.append(line)
    if state == "before":
        out.insert(0, "/// @file")
    return out


def plain_images(picture):
    """One image for each theme. The style shows one of them."""
    return "".join(
        f'<img class="{theme}-only" src="{picture[theme]}" width="960" alt="{picture["alt"]}"/>'
        for theme in ("light", "dark")
    )


def prepare_page(path, lines):
    text = "\n".join(lines)
    if path.name == "kept.md":
        text = re.sub(r"^### ([a-z0-9-]+)$", r"### \1 {#kept-\1}", text, flags=re.MULTILINE)
        text = re.sub(r"\(#([a-z0-9-]+)\)", r"(#kept-\1)", text)
    text = re.sub(r"\]\(([./a-z]*)kept\.md#([a-z0-9-]+)\)", r"](#kept-\2)", text)
    text = re.sub(r"\]\((?:\.\./)*README\.md(?:#[^)]*)?\)", "](index.html)", text)
    # A file that is no page of the site is named without a link.
    text = re.sub(r"\[([^]]+)\]\((?!https?:)(?![^)]*\.(?:md|html))[^#)][^)]*\)", r"\1", text)
    text = PICTURE.sub(plain_images, text)
    return text.split("\n")


def main():
    path = pathlib.Path(sys.argv[1])
    lines = path.read_text().splitlines()
    prepared = prepare_page(path, lines) if path.suffix == ".md" else prepare_header(lines)
    print("\n".join(prepared))


if __name__ == "__main__":
    main()
