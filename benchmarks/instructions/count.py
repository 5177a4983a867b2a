#!/usr/bin/env python3
"""Counts the instructions of each operation on each processor, and prints a Markdown table.

    count.py PROCESSOR=PROGRAM...

PROCESSOR is a name that qemu-user has, such as x86_64 or aarch64. PROGRAM is counted_operations, built
for it. The emulator executes one instruction at a time and logs each one, with the name of the function
that begins there. The same program gives the same counts on any machine.
"""

import argparse
import os
import re
import subprocess
import sys

BEGIN, END = " beginOperation\n", " endOperation\n"
# Where a cross compiler's libraries are. The emulator ignores a folder that does not exist.
LIBRARIES = "/usr/{}-linux-gnu"


def counts(log):
    """The number of instructions between each call of beginOperation and the next of endOperation."""
    found, counted = [], None
    for line in log:
        if line.endswith(BEGIN):
            counted = 0
        elif line.endswith(END):
            found.append(counted)
            counted = None
        elif counted is not None:
            counted += 1
    return found


def run(processor, program):
    """The instructions of each operation, by its name."""
    reading, writing = os.pipe()
    command = [f"qemu-{processor}", "-L", LIBRARIES.format(processor), "-singlestep",
               "-d", "exec,nochain", "-D", f"/dev/fd/{writing}", program]
    with subprocess.Popen(command, stdout=subprocess.PIPE, text=True, pass_fds=[writing]) as process:
        os.close(writing)
        with os.fdopen(reading) as log:
            counted = counts(log)
        *names, rounds = process.stdout.read().splitlines()
    if process.returncode != 0:
        sys.exit(f"count.py: {program} failed")
    divisor = int(re.fullmatch(r"rounds (\d+)", rounds)[1])
    if len(names) != len(counted) or not names:
        sys.exit(f"count.py: {len(names)} operations of {program}, but {len(counted)} counts")
    return {name: round(count / divisor) for name, count in zip(names, counted)}


def table(by_processor):
    processors = list(by_processor)
    first = by_processor[processors[0]]
    yield "| operation | " + " | ".join(processors) + " |"
    yield "|---" + "|--:" * len(processors) + "|"
    for name in first:
        yield f"| {name} | " + " | ".join(str(by_processor[p][name]) for p in processors) + " |"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("programs", nargs="+", metavar="PROCESSOR=PROGRAM")
    programs = [program.split("=", 1) for program in parser.parse_args().programs]
    print("\n".join(table({processor: run(processor, path) for processor, path in programs})))


if __name__ == "__main__":
    main()
