"""Builds mutants of the library and runs its tests on each. scripts/mutate says what it is for."""

import argparse
import collections
import concurrent.futures
import difflib
import json
import os
import pathlib
import queue
import random
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import threading
import time

import find

TREE = pathlib.Path(__file__).resolve().parent.parent
BUILD = TREE / "build" / "mutants"
EQUIVALENT = TREE / "mutants" / "equivalent.txt"
GATE = 95.0

# Some optimisation, so that a mutant that changes nothing gives the same object code.
COMPILER_OPTIONS = ["-O2", "-w"]
LONGEST_TEST = 6.0  # seconds; what takes longer is not run for mutants
MEMORY = 6 << 30


# ---- the list of equivalent mutants


def read_equivalent(path):
    """Returns the entries of the list: blocks of lines `LABEL text`, separated by empty lines."""
    entries = []
    for block in re.split(r"\n\s*\n", path.read_text(encoding="utf-8")):
        entry = {}
        for line in block.splitlines():
            if line.startswith("#") or not line.strip():
                continue
            label, _, text = line.partition(" ")
            if label == "" and "reason" in entry:
                entry["reason"] += " " + text.strip()
            elif label in ("file", "line", "change", "reason"):
                if label == "change":
                    entry.setdefault("change", []).append(find.normal(text))
                else:
                    entry[label] = find.normal(text)
            else:
                sys.exit(f"mutate: {path.name}: a line begins with none of file, line, change, reason: {line}")
        if entry:
            if set(entry) != {"file", "line", "change", "reason"}:
                sys.exit(f"mutate: {path.name}: an entry needs file, line, change and reason: {entry}")
            entries.append(entry)
    return entries


def listed_as_equivalent(mutants):
    """Returns the reasons by the mutants' ids, and the entries that fit no mutant."""
    by_key = collections.defaultdict(list)
    for mutant in mutants:
        by_key[mutant.file, mutant.code, find.normal(mutant.change)].append(mutant.id)
    reasons, stale = {}, []
    for entry in read_equivalent(EQUIVALENT):
        for change in entry["change"]:
            ids = by_key.get((entry["file"], entry["line"], change))
            if not ids:
                stale.append(f"{entry['file']}: {entry['line']}: {change}")
            for id in ids or ():
                reasons[id] = entry["reason"]
    return reasons, stale


# ---- the build


def command_output(*command):
    return subprocess.run(command, cwd=BUILD, check=True, capture_output=True, text=True).stdout


class Test:
    """One run of a test program in one environment."""

    def __init__(self, described):
        self.name = described["name"]
        self.command = described["command"]
        self.program = pathlib.Path(self.command[0]).name
        properties = {entry["name"]: entry["value"] for entry in described.get("properties", [])}
        self.directory = properties.get("WORKING_DIRECTORY", str(BUILD))
        self.environment = dict(entry.split("=", 1) for entry in properties.get("ENVIRONMENT", []))
        self.seconds = 0.0
        self.quick_to_compile = True
        self.direct_includes = set()
        self.reached = set()  # the library's objects that it may call
        self.internal = False  # links the library's objects in place of the library
        self.link = ""
        self.objects = []

    def passes(self, library, program, limit):
        environment = dict(os.environ, **self.environment)
        environment.update(LD_LIBRARY_PATH=str(library), GTEST_FAIL_FAST="1")
        process = subprocess.Popen(
            [program, *self.command[1:]],
            cwd=self.directory,
            env=environment,
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            start_new_session=True,
            preexec_fn=limit_memory,
        )
        try:
            return process.wait(limit) == 0
        except subprocess.TimeoutExpired:
            return False
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
    resource.setrlimit(resource.RLIMIT_FSIZE, (1 << 30, 1 << 30))


class Project:
    """The build of the unchanged library and its tests."""

    def __init__(self):
        configure = ["cmake", "--preset", "release", "-B", str(BUILD), "--no-warn-unused-cli"]
        log = TREE / "build" / "mutants.log"
        log.parent.mkdir(exist_ok=True)
        with open(log, "w", encoding="utf-8") as output:

            def run(*command):
                return subprocess.run(command, cwd=TREE, stdout=output, stderr=output).returncode == 0

            if not run(*configure) and not run(*configure, "--fresh"):
                sys.exit(f"mutate: cmake failed, see {log}")
            targets = [
                match.group(1)
                for match in re.finditer(
                    r"(?m)^(\S+): phony$|^(?:tests|utillibrary)/\S+: \S+$", command_output("ninja", "-t", "targets", "all")
                )
                if match.group(1)
            ]
            wanted = [
                name
                for name in targets
                if re.fullmatch(r"\w+_(test|sweep)|golden_vectors|header_examples|test_plugins|test_locales|utillibrary", name)
            ]
            if not run("cmake", "--build", str(BUILD), "--parallel", str(os.cpu_count()), "--target", *wanted):
                sys.exit(f"mutate: the build failed, see {log}")
        self.read_commands()
        self.read_tests()

    def read_commands(self):
        self.compile = {}  # the command by the object
        self.sources = {}  # the source by the object
        for entry in json.loads((BUILD / "compile_commands.json").read_text()):
            words = [w for w in shlex.split(entry["command"]) if w != "-Werror" and not w.endswith("ccache")]
            name = words[words.index("-o") + 1]
            self.compile[name] = words
            self.sources[name] = entry["file"]
        self.includes = collections.defaultdict(set)  # the objects by the file that they include
        name = ""
        for line in command_output("ninja", "-t", "deps").splitlines():
            if line.startswith("    "):
                path = os.path.normpath(BUILD / line.strip())
                self.includes[path].add(name)
            else:
                name = line.partition(":")[0]
        library = next((BUILD / "utillibrary").glob("libutillibrary.so.*.*.*")).relative_to(BUILD)
        self.library_link = command_output("ninja", "-t", "commands", "-s", str(library))
        self.library_name = str(library)
        self.library_objects = [w for w in shlex.split(self.library_link) if w.endswith(".o")]

    def read_tests(self):
        described = json.loads(command_output("ctest", "--show-only=json-v1"))["tests"]
        self.tests = []
        for entry in described:
            if "command" not in entry:
                continue
            program = pathlib.Path(entry["command"][0])
            if program.parent != BUILD / "tests" or not re.fullmatch(
                r"\w+_(test|sweep)|golden_vectors|header_examples", program.name
            ):
                continue
            test = Test(entry)
            test.link = command_output("ninja", "-t", "commands", "-s", f"tests/{program.name}")
            words = shlex.split(test.link)
            test.objects = [w for w in words if w.endswith(".o")]
            own = [w for w in test.objects if w not in self.library_objects]
            test.direct_includes = {
                header
                for w in own
                if w in self.sources
                for header in re.findall(r'#include "(utillibrary/[^"]*)"', pathlib.Path(self.sources[w]).read_text())
            }
            test.quick_to_compile = all("-O0" in self.compile[w] for w in own if w in self.compile)
            test.internal = any(w in self.library_objects for w in test.objects)
            self.tests.append(test)

    def prepare(self, worker):
        """Compiles the unchanged objects, times every test, and leaves out the slow ones."""
        self.base = BUILD / "base"
        shutil.rmtree(self.base, ignore_errors=True)
        self.objects = {}
        self.precompile()
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for name, made in zip(
                self.library_objects,
                pool.map(lambda o: self.compiled(o, self.base / o, None, {}), self.library_objects),
            ):
                if not made:
                    sys.exit(f"mutate: {name} does not compile")
                self.objects[name] = self.base / name
        worker.begin()
        if not worker.link_library({}):
            sys.exit("mutate: the library does not link")
        quick = []
        for test in self.tests:
            started = time.monotonic()
            program = worker.program_of(test, {}, set())
            if program is None or not test.passes(worker.library, program, 600):
                sys.exit(f"mutate: {test.name} fails on the unchanged library")
            test.seconds = time.monotonic() - started
            if test.seconds <= LONGEST_TEST:
                quick.append(test)
        self.find_reached()
        self.left_out = [test.name for test in self.tests if test not in quick]
        self.tests = quick

    def find_reached(self):
        """Finds the objects of the library that each test may call, by the symbols that objects define and need."""
        objects = {name: self.base / name for name in self.library_objects}
        objects.update({name: BUILD / name for test in self.tests for name in test.objects if name not in objects})
        archives = {BUILD / word for test in self.tests for word in shlex.split(test.link) if word.startswith("tests/lib")}
        makers = collections.defaultdict(set)  # the objects by the name that they define
        wants = collections.defaultdict(set)  # the names by the object that needs them
        for file in [*objects.values(), *archives]:
            for line in command_output("nm", "-A", "-g", str(file)).splitlines():
                place, kind, symbol = re.fullmatch(r"(.+):[0-9a-f ]{16} (\w) (\S+)", line).groups()
                if kind in "Uwv":
                    wants[place].add(symbol)
                else:
                    makers[symbol].add(place)
        names = {str(path): name for name, path in objects.items()}
        for test in self.tests:
            # The test's own objects, then what they need of the library and of the archives.
            found = {str(objects[name]) for name in test.objects if name not in self.library_objects}
            of_other_tests = {place for place, name in names.items() if name not in self.library_objects} - found
            new = set(found)
            while new:
                new = {maker for place in new for symbol in wants[place] for maker in makers[symbol]}
                new -= found | of_other_tests
                found |= new
            test.reached = {names[place] for place in found if place in names}

    def precompile(self):
        """Compiles the standard headers of the library once, which saves half of the time."""
        self.precompiled = None
        headers = set()
        for path in TREE.glob("utillibrary/**/*"):
            if path.suffix in (".h", ".cpp"):
                headers.update(re.findall(r"(?m)^#include <([a-z_]+(?:\.h)?)>", path.read_text(encoding="utf-8")))
        words = list(self.compile[self.library_objects[0]])
        header = self.base / "standard.h"
        header.parent.mkdir(parents=True, exist_ok=True)
        header.write_text("".join(f"#if __has_include(<{name}>)\n#include <{name}>\n#endif\n" for name in sorted(headers)))
        words[words.index("-o") + 1] = str(header) + ".gch"
        words[words.index("-c") + 1] = str(header)
        words[1:1] = ["-x", "c++-header"]
        if quiet(words + COMPILER_OPTIONS, 300):
            self.precompiled = header

    def compiled(self, name, target, overlay, replaced):
        words = list(self.compile[name])
        target.parent.mkdir(parents=True, exist_ok=True)
        words[words.index("-o") + 1] = str(target)
        source = self.sources[name]
        words = [str(replaced.get(w, w)) if w == source else w for w in words]
        if overlay is not None:
            words.insert(1, f"-I{overlay}")
        if name in self.library_objects:
            words += COMPILER_OPTIONS
            if self.precompiled:
                words[1:1] = ["-include", str(self.precompiled)]
        else:
            words.append("-w")
            if "-O0" not in words:
                words.append("-O1")
        return quiet(words, 300)

    def linked(self, command, output, target, objects):
        words = []
        for word in shlex.split(command):
            if word in (":", "&&"):
                continue
            words.append(str(target) if word == output else str(objects.get(word, word)))
        if shutil.which("ld.lld"):
            words.append("-fuse-ld=lld")
        target.parent.mkdir(parents=True, exist_ok=True)
        return quiet(words, 120)


def quiet(words, limit):
    try:
        return (
            subprocess.run(
                words,
                cwd=BUILD,
                stdin=subprocess.DEVNULL,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
                timeout=limit,
            ).returncode
            == 0
        )
    except subprocess.TimeoutExpired:
        return False


# ---- one mutant after the other


class History:
    """How often each test killed mutants of a file. Tests that killed many run first."""

    def __init__(self):
        self.path = BUILD / "history.json"
        self.lock = threading.Lock()
        self.kills = collections.defaultdict(collections.Counter)
        if self.path.exists():
            for file, tests in json.loads(self.path.read_text()).items():
                self.kills[file].update(tests)

    def add(self, file, test):
        with self.lock:
            self.kills[file][test] += 1

    def write(self):
        with self.lock:
            self.path.write_text(json.dumps(self.kills))


class Worker:
    def __init__(self, project, history, number):
        self.project = project
        self.history = history
        self.folder = BUILD / f"worker{number}"
        self.overlay = self.folder / "overlay"
        self.library = self.folder / "lib"

    def begin(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        self.overlay.mkdir(parents=True)
        self.library.mkdir()
        self.programs = {}

    def link_library(self, changed):
        project = self.project
        soname = re.search(r"-soname,(\S+)", project.library_link).group(1)
        objects = {**project.objects, **changed}
        return project.linked(project.library_link, project.library_name, self.library / soname, objects)

    def program_of(self, test, changed, including):
        """The test program, linked again if the mutant is in it; None if it does not compile."""
        project = self.project
        stale = [name for name in test.objects if name in including and name not in project.library_objects]
        if not test.internal and not stale:
            return str(BUILD / "tests" / test.program)
        if test.program not in self.programs:
            objects = {**project.objects, **changed}
            program = self.folder / "bin" / test.program
            for name in stale:
                objects[name] = self.folder / "objects" / name
                if not project.compiled(name, objects[name], self.overlay, {}):
                    return None
            made = project.linked(test.link, f"tests/{test.program}", program, objects)
            self.programs[test.program] = str(program) if made else None
        return self.programs[test.program]

    def order(self, mutant, including):
        """The tests, first those that probably kill the mutant and cost little time."""
        unit = find.unit_of(mutant.file)
        kills = self.history.kills[mutant.file]
        family = re.match(r"[A-Z]?[a-z]+(NVP)?", unit).group()  # such as Variant of VariantText

        def worth(test):
            value = float(kills[test.name])
            name, _, environment = test.name.partition(".")
            # StringNVPTable_internal.h is tested by StringNVPAverage_test.
            if name == unit or unit == "StringNVPTable" and name == "StringNVPAverage":
                value += 6
            elif name.startswith(unit):
                value += 3
            elif name.startswith(family):
                value += 1
            if mutant.file in test.direct_includes:
                value += 6
            if environment:
                value /= 3
            cost = test.seconds + 0.05
            if test.program not in self.programs:
                stale = any(name in including for name in test.objects)
                cost += (3.0 if test.quick_to_compile else 8.0) if stale else 0.3 if test.internal else 0.0
            return (value + 0.02) / cost

        return sorted(self.project.tests, key=worth, reverse=True)

    def run(self, mutant):
        """What becomes of a mutant, and the test that kills it."""
        self.begin()
        project = self.project
        original = (TREE / mutant.file).read_text(encoding="utf-8")
        path = self.overlay / mutant.file
        path.parent.mkdir(parents=True)
        path.write_text(mutant.applied(original), encoding="utf-8")

        is_source = mutant.file.endswith(".cpp")
        source = str(TREE / mutant.file)
        if is_source:
            objects = [name for name in project.library_objects if project.sources[name] == source]
            including = set()
        else:
            including = project.includes[source]
            objects = [name for name in project.library_objects if name in including]
        changed = {}
        for name in objects:
            target = self.folder / "objects" / name
            if not project.compiled(name, target, self.overlay, {source: path}):
                return "not compiled", ""
            if target.read_bytes() != project.objects[name].read_bytes():
                changed[name] = target
        if find.is_public(mutant.file):
            # A host compiles a public header into its own code. Here only the tests of the unit do so.
            unit = find.unit_of(mutant.file)
            own = {name for test in project.tests if test.name.startswith(unit) for name in test.objects}
            including = including & own
        else:
            including = including - set(project.library_objects)
        tests = self.order(mutant, including)
        tests = [
            test
            for test in tests
            if test.reached & changed.keys() or any(name in including for name in test.objects)
        ]
        if not changed:
            # No object of the library changes. A test that includes the file may still call the code: the general
            # path of another processor, for example.
            tests = [test for test in tests if any(name in including for name in test.objects)]
            if not find.is_public(mutant.file):
                tests = [test for test in tests if mutant.file in test.direct_includes]
        if tests and not self.link_library(changed):
            return "not compiled", ""
        for test in tests:
            program = self.program_of(test, changed, including)
            if program is None:
                # The library compiles and the test does not: a static_assert of the test notices the mutant.
                return "killed", test.name
            if not test.passes(self.library, program, 5 + 10 * test.seconds):
                self.history.add(mutant.file, test.name)
                return "killed", test.name
        return "survived" if changed or find.is_public(mutant.file) else "same code", ""


OUTCOMES = ["killed", "survived", "same code", "listed", "not compiled"]


def table(results):
    by_unit = collections.defaultdict(collections.Counter)
    for mutant, outcome in results:
        by_unit[find.unit_of(mutant.file)][outcome] += 1
        by_unit["all"][outcome] += 1
    row = "{:<24}" + "{:>14}" * len(OUTCOMES) + "{:>9}"
    lines = [row.format("unit", *OUTCOMES, "share")]
    for unit in sorted(by_unit, key=lambda name: (name == "all", name.lower())):
        counts = by_unit[unit]
        lines.append(row.format(unit, *(counts[o] for o in OUTCOMES), share_text(counts)))
    return "\n".join(lines), by_unit["all"]


def share_text(counts):
    total = counts["killed"] + counts["survived"]
    return f"{100.0 * counts['killed'] / total:.1f} %" if total else "-"


def show(mutant):
    original = (TREE / mutant.file).read_text(encoding="utf-8")
    lines = difflib.unified_diff(
        original.splitlines(keepends=True),
        mutant.applied(original).splitlines(keepends=True),
        mutant.file,
        mutant.file,
    )
    print(f"{mutant.id} {mutant.function}: {mutant.change}")
    print("".join(lines), end="")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--list", action="store_true")
    parser.add_argument("--show", action="store_true")
    parser.add_argument("--sample", type=int)
    parser.add_argument("--seed", type=int)
    parser.add_argument("--unit")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--listed", action="store_true")
    parser.add_argument("ids", nargs="*")
    options = parser.parse_args()

    mutants = find.all_mutants(TREE)
    reasons, stale = listed_as_equivalent(mutants)
    if stale:
        for line in stale:
            print(f"mutate: mutants/equivalent.txt names what is not there: {line}", file=sys.stderr)
        sys.exit(1)
    by_id = {mutant.id: mutant for mutant in mutants}
    if len(by_id) != len(mutants):
        sys.exit("mutate: two mutants have the same name")
    for id in options.ids:
        if id not in by_id:
            sys.exit(f"mutate: there is no mutant {id}")
    if options.unit:
        mutants = [mutant for mutant in mutants if find.unit_of(mutant.file) == options.unit]
        if not mutants:
            sys.exit(f"mutate: there is no unit {options.unit}")
    if options.ids:
        mutants = [by_id[id] for id in options.ids]
    if options.show:
        for mutant in mutants:
            show(mutant)
        return 0
    if options.list:
        for mutant in mutants:
            note = "  (listed as equivalent)" if mutant.id in reasons else ""
            print(f"{mutant.id} {mutant.file}:{mutant.line}: {mutant.change}{note}")
        return 0
    if options.listed:
        mutants = [mutant for mutant in mutants if mutant.id in reasons]
    elif options.sample is not None:
        if options.seed is None:
            options.seed = random.SystemRandom().randrange(1_000_000)
        print(f"seed: {options.seed}", flush=True)
        mutants = random.Random(options.seed).sample(mutants, min(options.sample, len(mutants)))

    os.nice(19)
    project = Project()
    history = History()
    workers = [Worker(project, history, number) for number in range(options.jobs)]
    project.prepare(workers[0])
    if project.left_out:
        print("too slow, left out:", *project.left_out, flush=True)
    return judge(mutants, reasons, workers, history, options.listed or bool(options.ids))


def judge(mutants, reasons, workers, history, run_listed):
    free = queue.SimpleQueue()
    for worker in workers:
        free.put(worker)
    results = []

    def run(mutant):
        if mutant.id in reasons and not run_listed:
            return mutant, "listed", "", 0.0
        worker = free.get()
        started = time.monotonic()
        try:
            outcome, killer = worker.run(mutant)
        finally:
            free.put(worker)
        return mutant, outcome, killer, time.monotonic() - started

    with concurrent.futures.ThreadPoolExecutor(len(workers)) as pool:
        for mutant, outcome, killer, seconds in pool.map(run, mutants):
            results.append((mutant, outcome))
            if outcome != "listed":
                by = f" by {killer}" if killer else ""
                print(
                    f"{outcome:<12} {seconds:5.1f} s  {mutant.id} {mutant.file}:{mutant.line}: {mutant.change}{by}",
                    flush=True,
                )
            if len(results) % 10 == 0:
                history.write()
    history.write()

    survivors = [mutant for mutant, outcome in results if outcome == "survived"]
    if survivors:
        print("\nsurvivors:")
        for mutant in survivors:
            print(f"{mutant.id} {mutant.file}:{mutant.line}: {mutant.function}: {mutant.change}\n    {mutant.code}")
    text, counts = table(results)
    print(f"\n{text}")
    total = counts["killed"] + counts["survived"]
    return 0 if total == 0 or 100.0 * counts["killed"] >= GATE * total else 1


if __name__ == "__main__":
    sys.exit(main())
