#!/usr/bin/env python3
"""Compares what tests reached of the library with the list of places that none can reach.

    coverage.py --root FOLDER --list FILE --lines LCOV --records JSON

LCOV and JSON are what `llvm-cov export` writes in these two formats. Of a template or an inline
function, a place counts as reached if any copy of the function reached it. Prints a table of the
files, and each place that was not reached and is not listed. The status is 1 if there is one, if an
entry of the list is stale, or if a source is not in the report at all.

The list has one entry for each place, and below it, indented, the reason:

    utillibrary/FOLDER/FILE: KIND: CODE
        Why no test can reach it.

KIND is `line`, `never true`, `never false` (a branch), or `decides nothing` (a condition of a
decision: no two cases show that it alone changes the result). CODE is the line or the condition, with
single spaces.
"""

import argparse
import collections
import json
import pathlib
import sys

Place = collections.namedtuple("Place", "file kind code")


class Sources:
    """The text of the library's files."""

    def __init__(self, root):
        self.root = root.resolve()
        self.lines = {}

    def name_of(self, path):
        """The path from the root; nothing for a file that is not the library's."""
        path = pathlib.Path(path)
        if path.is_relative_to(self.root / "utillibrary"):
            return str(path.relative_to(self.root))
        return None

    def code(self, name, span):
        """The characters from (line, column) to (line, column), on one line."""
        if name not in self.lines:
            self.lines[name] = (self.root / name).read_text().split("\n")
        first, start, last, end = span
        part = self.lines[name][first - 1 : last]
        part[-1] = part[-1][: end - 1]
        part[0] = part[0][start - 1 :]
        return " ".join(" ".join(part).split())

    def line(self, name, number):
        return self.code(name, (number, 1, number, 10000))


def read_lines(path, sources):
    """{file: {line: count}} of an export in the format of lcov."""
    counts = {}
    name = None
    for line in path.read_text().splitlines():
        if line.startswith("SF:"):
            name = sources.name_of(line[3:])
        elif line.startswith("DA:") and name:
            number, count = line[3:].split(",")[:2]
            counts.setdefault(name, {})[int(number)] = int(count)
    return counts


def read_records(path, sources):
    """{(file, span): [true, false]} of branches, {(file, span): (conditions, reached)} of decisions."""
    branches = {}
    decisions = {}
    for function in json.loads(path.read_text())["data"][0]["functions"]:
        names = [sources.name_of(file) for file in function["filenames"]]
        spans = []
        for record in function["branches"]:
            name, span = names[record[6]], tuple(record[:4])
            if name is None:
                continue
            spans.append((name, span))
            sums = branches.setdefault((name, span), [0, 0])
            sums[0] += record[4]
            sums[1] += record[5]
        for record in function["mcdc_records"]:
            name, span, reached = names[record[4]], tuple(record[:4]), record[6]
            if name is None:
                continue
            inside = [s for f, s in sorted(spans) if f == name and span[:2] <= s[:2] and s[2:] <= span[2:]]
            if len(inside) != len(reached):
                inside = [span] * len(reached)
            known = decisions.setdefault((name, span), (inside, [False] * len(reached)))[1]
            known[:] = [a or b for a, b in zip(known, reached)]
    return branches, decisions


class Tally:
    """How many of the places of a file were reached."""

    KINDS = ["lines", "branches", "MC/DC"]

    def __init__(self):
        self.files = collections.defaultdict(lambda: {kind: [0, 0] for kind in self.KINDS})
        self.missing = []  # (Place, line)

    def add(self, kind, place, line, reached):
        for counts in (self.files[place.file][kind], self.files["total"][kind]):
            counts[0] += bool(reached)
            counts[1] += 1
        if not reached:
            self.missing.append((place, line))

    def print_table(self):
        def row(name, cells):
            print(f"{name:48}" + "".join(f"{cell:>14}" for cell in cells))

        row("reached", self.KINDS)
        for name in [*sorted(set(self.files) - {"total"}), "total"]:
            row(name, ["{} / {}".format(*self.files[name][kind]) for kind in self.KINDS])


def tally_of(lines, branches, decisions, sources):
    tally = Tally()
    for name, counts in lines.items():
        for number, count in counts.items():
            place = Place(name, "line", sources.line(name, number))
            tally.add("lines", place, number, count)
    for (name, span), counts in branches.items():
        for kind, count in zip(("never true", "never false"), counts):
            place = Place(name, kind, sources.code(name, span))
            tally.add("branches", place, span[0], count)
    for (name, _), (conditions, reached) in decisions.items():
        for span, count in zip(conditions, reached):
            place = Place(name, "decides nothing", sources.code(name, span))
            tally.add("MC/DC", place, span[0], count)
    return tally


def read_list(path):
    """The places of the list. Exits if an entry has no reason."""
    places = []
    reasons = collections.Counter()
    for line in path.read_text().splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        if line.startswith(" "):
            reasons[len(places)] += 1
            continue
        parts = line.split(": ", 2)
        if len(parts) != 3:
            sys.exit(f"coverage: {path}: not FILE: KIND: CODE: {line}")
        places.append(Place(*parts))
    for number, place in enumerate(places, 1):
        if not reasons[number]:
            sys.exit(f"coverage: {path}: no reason: {': '.join(place)}")
    return places


def main():
    parser = argparse.ArgumentParser()
    for option in ("--root", "--list", "--lines", "--records"):
        parser.add_argument(option, type=pathlib.Path, required=True)
    arguments = parser.parse_args()

    sources = Sources(arguments.root)
    lines = read_lines(arguments.lines, sources)
    tally = tally_of(lines, *read_records(arguments.records, sources), sources)
    tally.print_table()

    complaints = []
    listed = collections.Counter(read_list(arguments.list))
    print(f"{sum(listed.values())} places are listed in {arguments.list.name}.")
    for place, line in sorted(tally.missing):
        if listed[place]:
            listed[place] -= 1
        else:
            complaints.append(f"{place.file}:{line}: not reached: {place.kind}: {place.code}")
    complaints += [f"listed, but reached or gone: {': '.join(place)}" for place in listed.elements()]
    for file in sorted((sources.root / "utillibrary").rglob("*.cpp")):
        if sources.name_of(file) not in lines:
            complaints.append(f"{sources.name_of(file)}: not in the report")
    for complaint in complaints:
        print(f"coverage: {complaint}", file=sys.stderr)
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()
