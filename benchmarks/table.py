#!/usr/bin/env python3
"""Makes the table of speeds from what the benchmark programs wrote.

    table.py RESULTS.json... --json OUT.json --markdown OUT.md

A row is named "operation/role/who", with "/real_time/threads:N" after it if it ran on N
threads. The time of one thread is the least processor time of the repetitions, because other work
on the machine only adds to it; the JSON also has the median. The time of two threads is the median of
the clock: the least would be that of threads that did not run at the same time.
"""

import argparse
import collections
import datetime
import json
import pathlib
import re
import statistics
import subprocess
import sys

SIZE = re.compile(r"(.*), (\d+) (KiB|MiB)$")
LOCALE = re.compile(r"(.*), locale (.*)$")
THREADS = re.compile(r"/real_time/threads:(\d+)$")
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
    """Heads that begin with ">" stand above columns of numbers."""
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
    return table(["operation", "locale", ">ours, classic", ">ours, there", ">there ÷ classic",
                  ">plain, classic", ">plain, there"], lines())


def thread_table(rows):
    pairs = collections.defaultdict(dict)
    for row in rows:
        if row.threads:
            pairs[row.operation, row.role, row.who][row.threads] = row
    rates = ((key, *(1e3 / runs[threads].time for threads in (1, 2))) for key, runs in pairs.items())
    return table(["operation", "who", ">1 thread", ">2 threads", ">2 ÷ 1"], (
        [operation, ("~" if role == "other job" else "") + who, digits(one), digits(two),
         f"**{two / one:.2f}**"] for (operation, role, who), one, two in rates))


def size_table(rows):
    sizes, lines = {}, collections.defaultdict(dict)
    for row in rows:
        name = SIZE.match(row.operation)
        if name and not row.threads:
            size = int(name[2]) * (1024 if name[3] == "KiB" else 1024 ** 2)
            sizes[size] = f"{name[2]} {name[3]}"
            lines[name[1], ("~" if row.role == "other job" else "") + row.who][size] = row.time / size
    ordered = sorted(sizes)
    heads = ["operation", "who", *(f">{sizes[size]}: ns/byte" for size in ordered),
             ">largest ÷ smallest"]
    return table(heads, (
        [*key, *(f"{per_byte[size]:.3g}" for size in ordered),
         digits(per_byte[ordered[-1]] / per_byte[ordered[0]])]
        for key, per_byte in lines.items() if len(per_byte) == len(sizes)))


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


def markdown(about, left_out, units, rows):
    yield f"Machine: {about['processor']}, {about['processors']} cores; {about['system']}; {about['compiler']}."
    yield f"Date: {about['date']}. Packages: {about['packages']}."
    yield f"Left out: {left_out or 'nothing'}."
    yield ""
    yield (f"Nanoseconds of processor time an operation, unless a unit stands beside them: the least of "
           f"{about['repetitions']} repetitions, the rows of a unit interleaved at random on one pinned "
           f"core. In half of the rows the median lies less than {about['spread_of_half']:.0%} above, in "
           f"nine tenths less than {about['spread_of_nine_tenths']:.0%}.")
    yield ("plain: the libc or stream call that defines the behaviour. floor: what the operation "
           "cannot do without. ~: a peer whose job is not the same, which is never the best one.")
    yield ""
    for unit, operations in units.items():
        if any(operation.ours for operation in operations):
            yield f"## {unit}\n"
            yield from unit_table([o for o in operations if not LOCALE.match(o.name)])
    yield "## Floors\n"
    yield from floor_table(units.get("floors", []))
    yield "## Under a named locale\n"
    yield from locale_table(units)
    yield "## Cost by size\n"
    yield from size_table(rows)
    yield "## Two threads\n"
    yield ("Millions of operations a second by the clock, both threads together; medians, which count "
           "on a quiet machine only.\n")
    yield from thread_table(rows)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("results", nargs="+", type=pathlib.Path)
    parser.add_argument("--json", required=True, type=pathlib.Path)
    parser.add_argument("--markdown", required=True, type=pathlib.Path)
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

    arguments.json.write_text(json.dumps({
        "machine": about, "left_out": sorted(left_out),
        "units": {unit: [row.as_json() for row in read] for unit, read in rows_of.items()},
    }, indent=1) + "\n")
    arguments.markdown.write_text("\n".join(markdown(about, missing, units, rows)))
    for error in errors:
        print(f"wrong result: {error}", file=sys.stderr)
    return 1 if errors else 0


if __name__ == "__main__":
    sys.exit(main())
