#!/usr/bin/env python3
"""Makes the tables of speeds from what the benchmark programs wrote.

    table.py RESULTS.json... --json OUT.json --tables OUT.md [--page PAGE.md]

The tables become a page of their own. The summary of them replaces what PAGE.md has between its two
marks, SUMMARY_BEGIN and SUMMARY_END. OUT.json has all rows, and the summary, for pictures.py.

A row is named "operation/role/who", with "/real_time/threads:N" after it if it ran on N
threads. The time of one thread is the least processor time of the repetitions, because other work
on the machine only adds to it; the JSON also has the median. The time of two threads is the median of
the clock: the least would be that of threads that did not run at the same time.
"""

import argparse
import collections
import datetime
import json
import math
import pathlib
import re
import statistics
import subprocess
import sys

# The size at the end of a name, in bytes or in a number of things.
SIZE = re.compile(r"(?P<base>.*), (?P<number>\d+) (?P<unit>bytes|KiB|MiB|pairs?|names?)$")
BYTES = {"bytes": 1, "KiB": 1024, "MiB": 1024 ** 2}
LOCALE = re.compile(r"(.*), locale (.*)$")
THREADS = re.compile(r"/real_time/threads:(\d+)$")
SUMMARY_BEGIN = "<!-- The summary: scripts/bench --keep writes it. -->"
SUMMARY_END = "<!-- The end of the summary. -->"
# The programs whose rows have peers, by what they measure.
GROUPS = {
    "Variant": "Variant: build, copy, overwrite",
    "VariantNumbers": "Variant: conversions",
    "VariantText": "Variant: conversions",
    "xtime": "Times and calendar",
    "xtime_conversions": "Times and calendar",
    "mktimeEx": "Times and calendar",
    "StringTrim": "Strings and numbers",
    "StringUtilities": "Strings and numbers",
    "StringEscape": "Escaping",
    "StringNVP": "Fields and pairs",
    "ByteStream": "Blocks of bytes",
    "Library": "Loader and system",
    "SysStats": "Loader and system",
}
EQUAL = (0.95, 1.05)  # the ratios that count as equal
PACKAGES = [
    "libbenchmark-dev", "libabsl-dev", "libboost-dev", "libhowardhinnant-date-dev", "libfmt-dev",
    "libglib2.0-dev", "libgtop2-dev", "libpoco-dev", "qt6-base-dev",
]


# ---- reading


class Row:
    """One who does an operation: the figures of all repetitions."""

    def __init__(self, operation, role, who, threads):
        self.operation, self.role, self.who, self.threads = operation, role, who, threads
        self.times, self.allocations, self.note = [], 0.0, ""

    @property
    def time(self):
        return statistics.median(self.times) if self.threads else min(self.times)

    @property
    def spread(self):
        """How far the middle repetition lies above the least."""
        return statistics.median(self.times) / self.time - 1

    def as_json(self):
        row = {
            "operation": self.operation, "role": self.role, "who": self.who,
            "ns": round(self.time, 3),
            "median_ns": round(statistics.median(self.times), 3), "allocations": round(self.allocations, 2),
        }
        if self.threads:
            row["threads"] = self.threads
        if self.note:
            row["note"] = self.note
        return row


def read_unit(path):
    """The rows of one program, in the order in which it named them, and its errors."""
    content = json.loads(path.read_text())
    rows, errors = {}, []
    for run in sorted(content["benchmarks"], key=lambda run: run["family_index"]):
        if run["run_type"] != "iteration":
            continue
        name = run["run_name"]
        threads = THREADS.search(name)
        if run.get("error_occurred"):
            errors.append(f"{name}: {run['error_message']}")
            continue
        operation, role, who = THREADS.sub("", name).split("/", 2)
        row = rows.setdefault(name, Row(operation, role, who, int(threads[1]) if threads else 0))
        row.times.append(run["real_time" if threads else "cpu_time"])
        row.allocations = run["allocations"]
        row.note = run.get("label", "")
    return list(rows.values()), sorted(set(errors)), content["context"]


class Operation:
    """All the rows of one operation on one thread."""

    def __init__(self, name, rows):
        self.name = name
        self.rows = rows
        by_role = collections.defaultdict(list)
        for row in rows:
            by_role[row.role].append(row)
        for ranked in by_role.values():
            ranked.sort(key=lambda row: row.time)
        self.ours = next(iter(by_role["ours"]), None)
        self.plain = next(iter(by_role["plain"]), None)
        self.floor = next(iter(by_role["floor"]), None)
        self.best_peer = next(iter(by_role["peer"]), None)
        self.others = by_role["plain"][1:] + by_role["peer"][1:] + by_role["other job"]

    @property
    def size(self):
        """The name without its size, the size, and whether it counts bytes; None without a size."""
        name = SIZE.match(self.name)
        if name is None:
            return None
        factor = BYTES.get(name["unit"])
        return name["base"], int(name["number"]) * (factor or 1), factor is not None

    def over_ours(self, row):
        return row.time / self.ours.time if row and self.ours else None


def operations_of(rows):
    grouped = collections.defaultdict(list)
    for row in rows:
        if not row.threads:
            grouped[row.operation].append(row)
    return [Operation(name, rows) for name, rows in grouped.items()]


# ---- writing


def digits(value):
    """Three significant digits, or whole numbers from 100 on."""
    if value is None:
        return "–"
    return f"{value:.0f}" if value >= 100 else f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def duration(row):
    if row is None:
        return "–"
    for unit, size in (("ms", 1e6), ("µs", 1e3)):
        if row.time >= 10 * size:
            return f"{digits(row.time / size)} {unit}"
    return digits(row.time)


def named(row):
    return f"{row.who} {duration(row)}" if row else "–"


def other(row):
    return f"~{named(row)} ({row.note})" if row.role == "other job" else named(row)


def count(row):
    return f"{row.allocations:.3g}" if row else "–"


def table(heads, lines):
    """The columns of numbers are those whose heads begin with ">"."""
    yield "| " + " | ".join(head.lstrip(">") for head in heads) + " |"
    yield "|" + "|".join("--:" if head.startswith(">") else "---" for head in heads) + "|"
    for line in lines:
        yield "| " + " | ".join(line) + " |"
    yield ""


def unit_table(operations):
    heads = ["operation", ">ours", ">plain", ">best peer", ">floor", ">plain ÷ ours",
             ">best peer ÷ ours", ">allocations ours / plain / peer", "other peers"]
    return table(heads, (
        [o.name, f"**{duration(o.ours)}**", duration(o.plain), named(o.best_peer), named(o.floor),
         digits(o.over_ours(o.plain)), digits(o.over_ours(o.best_peer)),
         " / ".join(map(count, (o.ours, o.plain, o.best_peer))), "; ".join(map(other, o.others))]
        for o in operations if o.ours))


def floor_table(operations):
    return table(["floor", "by", ">ns"],
                 ([o.name, o.floor.who, duration(o.floor)] for o in operations if o.floor))


def locale_table(units):
    def lines():
        for operations in units.values():
            classic = {o.name: o for o in operations}
            for operation in operations:
                name = LOCALE.match(operation.name)
                if name and operation.ours:
                    base = classic[name[1]]
                    yield [name[1], name[2], duration(base.ours), duration(operation.ours),
                           digits(operation.ours.time / base.ours.time), duration(base.plain),
                           duration(operation.plain)]
    return table(["operation", "locale", ">ours, classic locale", ">ours, that locale", ">that ÷ classic",
                  ">plain, classic locale", ">plain, that locale"], lines())


def thread_table(rows):
    pairs = collections.defaultdict(dict)
    for row in rows:
        if row.threads:
            pairs[row.operation, row.role, row.who][row.threads] = row
    rates = ((key, *(1e3 / runs[threads].time for threads in (1, 2))) for key, runs in pairs.items())
    return table(["operation", "who", ">1 thread", ">2 threads", ">2 ÷ 1"], (
        [operation, ("~" if role == "other job" else "") + who, digits(one), digits(two),
         f"**{two / one:.2f}**"] for (operation, role, who), one, two in rates))


def size_table(units, in_bytes):
    """The time of each byte, or of each pair or name, by their number."""
    lines, labels = collections.defaultdict(lambda: collections.defaultdict(dict)), {}
    for operations in units.values():
        for operation in operations:
            if operation.size is None or operation.size[2] != in_bytes:
                continue
            base, size, _ = operation.size
            labels[size] = SIZE.match(operation.name)["number"]
            if in_bytes:
                labels[size] += " " + SIZE.match(operation.name)["unit"]
            for row in operation.rows:
                who = ("~" if row.role == "other job" else "") + row.who
                lines[base][who][size] = f"{row.time / size:.3g}"
    sizes = sorted(labels)
    heads = ["operation", "who", *(f">{labels[size]}" for size in sizes)]
    return table(heads, ([base, who, *(times.get(size, "–") for size in sizes)]
                         for base, by_who in lines.items() for who, times in by_who.items()
                         if len(times) > 1))


# ---- the summary


def geometric_mean(values):
    return math.exp(statistics.fmean(map(math.log, values)))


class Group:
    """The operations of some programs that have a peer with the same job."""

    def __init__(self, name, operations):
        self.name = name
        by_base = collections.defaultdict(list)
        for operation in operations:
            base = operation.size[0] if operation.size else operation.name
            by_base[base].append(operation.over_ours(operation.best_peer))
        self.operations = len(by_base)
        self.mean = geometric_mean([geometric_mean(ratios) for ratios in by_base.values()])
        ratios = [ratio for ratios in by_base.values() for ratio in ratios]
        self.faster = sum(ratio > EQUAL[1] for ratio in ratios)
        self.slower = sum(ratio < EQUAL[0] for ratio in ratios)
        self.equal = len(ratios) - self.faster - self.slower

    def as_json(self):
        return {"group": self.name, "operations": self.operations, "mean": round(self.mean, 6),
                "faster": self.faster, "equal": self.equal, "slower": self.slower}


def summary_of(units):
    """The groups in the order of GROUPS, and then all of them as one."""
    grouped = {name: [] for name in GROUPS.values()}
    for unit, operations in units.items():
        compared = [o for o in operations
                    if o.ours and o.best_peer and not LOCALE.match(o.name)]
        grouped.setdefault(GROUPS.get(unit, unit), []).extend(compared)
    groups = [Group(name, operations) for name, operations in grouped.items() if operations]
    every = [operation for operations in grouped.values() for operation in operations]
    return [*groups, Group("All", every)] if every else []


def summary_table(summary):
    heads = ["", ">operations", ">best peer ÷ ours", ">rows faster", ">rows equal", ">rows slower"]
    return table(heads, (
        [f"**{g.name}**" if g is summary[-1] else g.name, str(g.operations), f"**{digits(g.mean)}**",
         str(g.faster), str(g.equal), str(g.slower)] for g in summary))


def page_with_summary(page, about, summary):
    """The page with this summary between its marks."""
    before, mark, rest = page.partition(SUMMARY_BEGIN + "\n")
    _, end, after = rest.partition(SUMMARY_END)
    if not mark or not end:
        raise SystemExit(f"table.py: the page lacks {SUMMARY_BEGIN} or {SUMMARY_END}")
    where = f"Measured on {about['date']}: {about['processor']}, {about['compiler']}."
    lines = "\n".join(summary_table(summary))
    return "".join([before, mark, "\n", where, "\n\n", lines, "\n", end, after])


def output_of(*command):
    try:
        return subprocess.run(command, capture_output=True, text=True, check=False).stdout.strip()
    except OSError:
        return ""


def machine(context, rows):
    processor = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text())
    release = re.search(r'PRETTY_NAME="(.*)"', pathlib.Path("/etc/os-release").read_text())
    versions = output_of("dpkg-query", "--show", "--showformat=${Package} ${Version}, ", *PACKAGES)
    spreads = sorted(row.spread for row in rows if not row.threads)
    return {
        "date": datetime.date.today().isoformat(),
        "processor": processor[1] if processor else "unknown",
        "processors": context["num_cpus"],
        "system": release[1] if release else "unknown",
        "compiler": output_of("c++", "--version").split("\n")[0],
        "packages": versions.rstrip(", "),
        "repetitions": max(len(row.times) for row in rows if not row.threads),
        "spread_of_half": round(statistics.median(spreads), 3),
        "spread_of_nine_tenths": round(spreads[len(spreads) * 9 // 10], 3),
    }


def tables_page(about, left_out, units, rows):
    yield "# Speed: all tables\n"
    yield "<!-- scripts/bench --keep writes this page. -->\n"
    yield ("[speed.md](speed.md) has the summary, the pictures and the reasons. "
           "[benchmarks/README.md](../benchmarks/README.md) says how this was measured.\n")
    yield (f"- Machine: {about['processor']}, {about['processors']} cores; {about['system']}; "
           f"{about['compiler']}.")
    yield f"- Date: {about['date']}. Packages: {about['packages']}."
    yield f"- Left out: {left_out or 'nothing'}."
    yield (f"- A figure is the least processor time of {about['repetitions']} repetitions, in nanoseconds "
           f"if no unit follows it. All rows of a table run in random order on one core. In half of the "
           f"rows the median is less than {about['spread_of_half']:.0%} above the least time, in nine "
           f"tenths less than {about['spread_of_nine_tenths']:.0%}.")
    yield ("- plain: the libc or stream call that defines the result. floor: the least that the operation "
           "needs. ~: a peer whose job is not the same. It is never the best peer.")
    yield ""
    for unit, operations in units.items():
        if any(operation.ours for operation in operations):
            yield f"## {unit}\n"
            yield from unit_table([o for o in operations if not LOCALE.match(o.name)])
    yield "## Floors\n"
    yield from floor_table(units.get("floors", []))
    yield "## Under a named locale\n"
    yield from locale_table(units)
    yield "## Nanoseconds for a byte, by the size of the string or block\n"
    yield from size_table(units, True)
    yield "## Nanoseconds for a pair or name, by their number\n"
    yield from size_table(units, False)
    yield "## Two threads\n"
    yield ("Millions of operations a second by the clock, both threads together. The figures are medians, "
           "and mean something on a quiet machine only.\n")
    yield from thread_table(rows)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("results", nargs="+", type=pathlib.Path)
    parser.add_argument("--json", required=True, type=pathlib.Path)
    parser.add_argument("--tables", required=True, type=pathlib.Path)
    parser.add_argument("--page", type=pathlib.Path)
    arguments = parser.parse_args()

    rows_of, rows, errors, left_out = collections.defaultdict(list), [], [], set()
    context = {}
    for path in arguments.results:
        read, wrong, context = read_unit(path)
        rows_of[path.name.split(".")[0]] += read
        rows += read
        errors += wrong
        left_out.update(filter(None, context["left_out"].split(", ")))
    units = {unit: operations_of(rows_of[unit]) for unit in sorted(rows_of, key=str.lower)}
    about = machine(context, rows)
    missing = ", ".join(sorted(left_out))
    summary = summary_of(units)

    arguments.json.write_text(json.dumps({
        "machine": about, "left_out": sorted(left_out),
        "summary": [group.as_json() for group in summary],
        "units": {unit: [row.as_json() for row in read] for unit, read in rows_of.items()},
    }, indent=1) + "\n")
    arguments.tables.write_text("\n".join(tables_page(about, missing, units, rows)))
    if arguments.page:
        page = arguments.page.read_text()
        arguments.page.write_text(page_with_summary(page, about, summary))
    for error in errors:
        print(f"wrong result: {error}", file=sys.stderr)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
