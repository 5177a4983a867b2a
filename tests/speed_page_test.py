#!/usr/bin/env python3
"""Tests what makes the page of speeds: table.py and pictures.py, on results that are made up here.

    SOURCE_DIR=FOLDER speed_page_test.py
"""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.dom.minidom

SOURCE = pathlib.Path(os.environ["SOURCE_DIR"])
BENCHMARKS = SOURCE / "benchmarks"
sys.path.insert(0, str(BENCHMARKS))
sys.dont_write_bytecode = True

import pictures  # noqa: E402
import table  # noqa: E402

PAGE = f"# Speed\n\n{table.SUMMARY_BEGIN}\nan older summary\n{table.SUMMARY_END}\n\nReasons.\n"

# Program, row, nanoseconds of each repetition.
ROWS = [
    ("StringTrim", "trim/ours/utillibrary", [10, 12, 14]),
    ("StringTrim", "trim/plain/isspace", [40, 40, 40]),
    ("StringTrim", "trim/peer/Slow", [50, 50, 50]),
    ("StringTrim", "trim/peer/Fast", [20, 21, 22]),
    ("StringTrim", "trim/other job/Other", [1, 1, 1]),
    ("StringTrim", "trim, locale C.UTF-8/ours/utillibrary", [15, 15, 15]),
    ("StringTrim", "trim, locale C.UTF-8/plain/isspace", [80, 80, 80]),
    ("StringTrim", "trim, locale C.UTF-8/peer/Fast", [60, 60, 60]),
    ("StringTrim", "pad, 16 bytes/ours/utillibrary", [10, 10, 10]),
    ("StringNVP", "split, 16 bytes/ours/utillibrary", [16, 16, 16]),
    ("StringNVP", "split, 16 bytes/peer/Fast", [64, 64, 64]),
    ("StringNVP", "split, 16 bytes/other job/Views", [8, 8, 8]),
    ("StringNVP", "split, 1 KiB/other job/Views", [512, 512, 512]),
    ("StringNVP", "split, 1 KiB/ours/utillibrary", [1024, 1024, 1024]),
    ("StringNVP", "split, 1 KiB/peer/Fast", [1024, 1024, 1024]),
    ("StringNVP", "split, 1 KiB/peer/Slow", [9000, 9000, 9000]),
    ("StringNVP", "split, 16 bytes/peer/Slow", [900, 900, 900]),
    ("StringNVP", "split, 1 KiB/peer/OneSize", [2000, 2000, 2000]),
    ("StringNVP", "serialize, 1 pair/ours/utillibrary", [20, 20, 20]),
    ("StringNVP", "serialize, 1 pair/peer/Fast", [10, 10, 10]),
    ("StringNVP", "serialize, 100 pairs/ours/utillibrary", [2000, 2000, 2000]),
    ("StringNVP", "serialize, 100 pairs/peer/Fast", [1000, 1000, 1000]),
    ("floors", "clock/floor/clock_gettime", [30, 30, 30]),
]
THREAD_ROWS = [
    ("StringTrim", "trim/ours/utillibrary/real_time/threads:1", [1, 10, 12]),
    ("StringTrim", "trim/ours/utillibrary/real_time/threads:2", [5, 5, 5]),
    ("StringNVP", "serialize, 1 pair/ours/utillibrary/real_time/threads:2", [99, 99, 99]),
    ("StringNVP", "serialize, 1 pair/ours/utillibrary/real_time/threads:1", [99, 99, 99]),
]


def run_of(family, name, time):
    return {"family_index": family, "run_name": name, "run_type": "iteration", "cpu_time": time,
            "real_time": time, "allocations": 1.0, "label": "why" if "other job" in name else ""}


def write_results(folder, wrong=None):
    """The files of all programs. `wrong` is a row that reports a wrong result."""
    for suffix, rows in ((".json", ROWS), (".threads.json", THREAD_ROWS)):
        for program in {row[0] for row in rows}:
            runs = [run_of(family, name, time) for family, (unit, name, times) in enumerate(rows)
                    if unit == program for time in times]
            for run in runs:
                if run["run_name"] == wrong:
                    run.update(error_occurred=True, error_message="not the expected result")
            context = {"num_cpus": 2, "left_out": "Poco, Qt"}
            content = json.dumps({"context": context, "benchmarks": runs})
            (folder / (program + suffix)).write_text(content)


class Made(unittest.TestCase):
    """The files that a run makes, in a folder of their own."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        self.page = self.folder / "speed.md"
        self.page.write_text(PAGE)

    def make(self, wrong=None):
        results = self.folder / "results"
        results.mkdir(exist_ok=True)
        write_results(results, wrong)
        return subprocess.run(
            [sys.executable, BENCHMARKS / "table.py", *sorted(results.glob("*.json")),
             "--json", self.folder / "speed.json", "--tables", self.folder / "tables.md",
             "--page", self.page], capture_output=True, text=True, check=False)

    def made(self, name):
        return (self.folder / name).read_text()

    def assert_line(self, name, line):
        self.assertIn(line, self.made(name).splitlines())


class Tables(Made):
    def test_a_table_has_the_least_times_and_the_fastest_peer_that_does_the_same_job(self):
        self.assertEqual(self.make().returncode, 0)
        self.assert_line("tables.md", "| trim | **10.0** | 40.0 | Fast 20.0 | – | 4.00 | 2.00 | 1 / 1 / 1 "
                                      "| Slow 50.0; ~Other 1.00 (why) |")
        self.assert_line("tables.md", "- Left out: Poco, Qt.")

    def test_the_tables_by_size_divide_by_bytes_and_by_pairs(self):
        self.make()
        self.assert_line("tables.md", "| operation | who | 16 bytes | 1 KiB |")
        self.assert_line("tables.md", "| split | Fast | 4 | 1 |")
        self.assert_line("tables.md", "| split | ~Views | 0.5 | 0.5 |")
        # A row with one size has no line in this table.
        self.assertNotIn("| split | OneSize", self.made("tables.md"))
        self.assertNotIn("| pad | utillibrary", self.made("tables.md"))
        self.assert_line("tables.md", "| operation | who | 1 | 100 |")
        self.assert_line("tables.md", "| serialize | utillibrary | 20 | 20 |")

    def test_the_other_tables_have_the_floors_the_locales_and_two_threads(self):
        self.make()
        self.assert_line("tables.md", "| clock | clock_gettime | 30.0 |")
        self.assert_line("tables.md", "| trim | C.UTF-8 | 10.0 | 15.0 | 1.50 | 40.0 | 80.0 |")
        self.assert_line("tables.md", "| trim | utillibrary | 100 | 200 | **2.00** |")

    def test_the_summary_counts_an_operation_once_and_each_of_its_sizes_as_a_row(self):
        self.make()
        self.assert_line("speed.md", "| Strings and numbers | 1 | **2.00** | 1 | 0 | 0 |")
        # split: the mean of 4 and 1 is 2. serialize: 0.5 at both sizes.
        self.assert_line("speed.md", "| Fields and pairs | 2 | **1.00** | 1 | 1 | 2 |")
        self.assert_line("speed.md", "| **All** | 3 | **1.26** | 2 | 1 | 2 |")

    def test_the_summary_replaces_what_is_between_the_marks_and_nothing_else(self):
        self.make()
        once = self.made("speed.md")
        self.assertNotIn("an older summary", once)
        self.assertTrue(once.startswith("# Speed\n\n" + table.SUMMARY_BEGIN + "\n"))
        self.assertTrue(once.endswith(table.SUMMARY_END + "\n\nReasons.\n"))
        self.make()
        self.assertEqual(self.made("speed.md"), once)

    def test_a_page_without_the_marks_is_refused_and_not_changed(self):
        self.page.write_text("# Speed\n")
        made = self.make()
        self.assertNotEqual(made.returncode, 0)
        self.assertIn("the page lacks", made.stderr)
        self.assertEqual(self.made("speed.md"), "# Speed\n")

    def test_a_wrong_result_is_reported_and_fails(self):
        made = self.make(wrong="trim/peer/Fast")
        self.assertEqual(made.returncode, 1)
        self.assertIn("wrong result: trim/peer/Fast: not the expected result", made.stderr)

    def test_ratios_of_exactly_5_percent_are_equal(self):
        for ratio, verdict in ((0.94, "slower"), (0.95, "equal"), (1.05, "equal"), (1.06, "faster")):
            ours, peer = table.Row("o", "ours", "us", 0), table.Row("o", "peer", "them", 0)
            ours.times, peer.times = [1.0], [ratio]
            group = table.Group("g", [table.Operation("o", [ours, peer])])
            self.assertEqual(getattr(group, verdict), 1, ratio)


class Pictures(Made):
    def draw(self):
        self.make()
        return subprocess.run(
            [sys.executable, "-B", BENCHMARKS / "pictures.py", self.folder / "speed.json", self.folder],
            capture_output=True, text=True, check=False)

    def test_each_picture_is_small_svg_for_a_light_and_a_dark_page(self):
        self.assertEqual(self.draw().returncode, 0)
        names = sorted(path.name for path in self.folder.glob("*.svg"))
        self.assertEqual(names, [f"speed-{name}-{theme}.svg" for name in ("bytes", "pairs", "summary")
                                 for theme in ("dark", "light")])
        for name in names:
            svg = xml.dom.minidom.parseString(self.made(name)).documentElement
            self.assertEqual(svg.tagName, "svg")
            self.assertLess(len(self.made(name)), 60_000)
            self.assertEqual(len(svg.getElementsByTagName("title")), 1)

    def test_the_themes_differ_in_colours_alone(self):
        self.draw()
        for name in ("bytes", "pairs", "summary"):
            light, dark = (re.sub(r"#[0-9a-f]{6}", "", self.made(f"speed-{name}-{theme}.svg"))
                           for theme in ("light", "dark"))
            self.assertEqual(light, dark)

    def test_a_line_has_a_point_for_each_size(self):
        self.draw()
        svg = xml.dom.minidom.parseString(self.made("speed-pairs-light.svg"))
        legend_and_curves = svg.getElementsByTagName("polyline")
        # Three lines of the legend, and two of `serialize`: ours and Fast.
        self.assertEqual(len(legend_and_curves), 5)
        for polyline in legend_and_curves:
            self.assertEqual(len(polyline.getAttribute("points").split()), 2)
        # 20 ns for a pair at both sizes: a level line.
        ours = legend_and_curves[-1].getAttribute("points").split()
        self.assertEqual(len({point.split(",")[1] for point in ours}), 1)

    def test_the_peer_with_the_most_sizes_is_drawn_and_of_several_the_fastest(self):
        speed = {"StringNVP": [
            {"operation": f"split, {size} bytes", "role": "peer", "who": who, "ns": time}
            for who, times in (("OneSize", [1]), ("Slow", [9, 9]), ("Fast", [4, 4]))
            for size, time in zip((16, 64), times)]}
        panel = pictures.Panel("Split", "StringNVP", "split")
        self.assertEqual(pictures.curves(speed, panel), {"peer": ("Fast", {16: 4 / 16, 64: 4 / 64})})

    def test_the_fastest_peer_is_named_and_drawn_above_if_it_is_slower(self):
        self.draw()
        svg = self.made("speed-bytes-light.svg")
        self.assertIn(">fastest peer: Fast<", svg)
        lines = xml.dom.minidom.parseString(svg).getElementsByTagName("polyline")
        peer, ours = ([float(point.split(",")[1]) for point in line.getAttribute("points").split()]
                      for line in lines[-2:])
        self.assertLess(peer[0], ours[0])   # 4 ns a byte against 1
        self.assertEqual(peer[1], ours[1])  # 1 ns a byte each

    def test_a_bar_says_the_mean_and_the_rows(self):
        self.draw()
        svg = self.made("speed-summary-light.svg")
        for words in ("Strings and numbers", "2.00", "1 / 0 / 0", "Fields and pairs", "1 / 1 / 2"):
            self.assertIn(f">{words}<", svg)

    def test_a_bar_says_the_same_mean_as_the_table(self):
        # 0.75499 is 0.75 and not 0.76, which 0.755 would become.
        ours, peer = table.Row("o", "ours", "us", 0), table.Row("o", "peer", "them", 0)
        ours.times, peer.times = [1.0], [0.75499]
        group = table.Group("g", [table.Operation("o", [ours, peer])])
        self.assertIn("| **0.75** |", "".join(table.summary_table([group])))
        self.assertIn(">0.75<", pictures.summary_picture([group.as_json()], pictures.THEMES[0]))

    def test_a_bar_begins_at_1_and_ends_at_its_mean(self):
        groups = [{"group": "twice", "mean": 2.0, "faster": 1, "equal": 0, "slower": 0},
                  {"group": "half", "mean": 0.5, "faster": 0, "equal": 0, "slower": 1}]
        svg = xml.dom.minidom.parseString(pictures.summary_picture(groups, pictures.THEMES[0]))
        ticks = {tick.firstChild.data: float(tick.getAttribute("x"))
                 for tick in svg.getElementsByTagName("text")}
        _, *bars = svg.getElementsByTagName("rect")
        ends = [(float(bar.getAttribute("x")),
                 float(bar.getAttribute("x")) + float(bar.getAttribute("width"))) for bar in bars]
        for bar, expected in zip(ends, ((ticks["1 ×"], ticks["2 ×"]), (ticks["0.5 ×"], ticks["1 ×"]))):
            self.assertAlmostEqual(bar[0], expected[0], delta=0.2)
            self.assertAlmostEqual(bar[1], expected[1], delta=0.2)

    def test_rows_without_sizes_are_refused(self):
        self.make()
        speed = json.loads(self.made("speed.json"))
        speed["units"] = {}
        (self.folder / "speed.json").write_text(json.dumps(speed))
        drawn = subprocess.run(
            [sys.executable, "-B", BENCHMARKS / "pictures.py", self.folder / "speed.json", self.folder],
            capture_output=True, text=True, check=False)
        self.assertNotEqual(drawn.returncode, 0)
        self.assertIn("rows of the pictures are missing", drawn.stderr)


class Project(unittest.TestCase):
    def test_each_program_with_peers_belongs_to_a_group(self):
        lists = (BENCHMARKS / "CMakeLists.txt").read_text()
        with_peers = set(re.findall(r"^utillibrary_benchmark\((\w+) [A-Z]", lists, re.MULTILINE))
        self.assertEqual(with_peers, set(table.GROUPS))

    def test_each_operation_that_is_drawn_is_in_its_program(self):
        for panel in pictures.BYTE_PANELS + pictures.PAIR_PANELS:
            program = (BENCHMARKS / f"{panel.unit}_benchmark.cpp").read_text()
            words = panel.operation
            # The name is made of two literals in some programs: "from " and "string, ".
            first, *rest = re.split(r"(?<=^from )|(?<=^overwrite, )|(?<=^escape )|(?<=^unescape )", words)
            for part in (first, *rest):
                self.assertIn('"' + part, program, words)

    def test_the_page_has_the_marks_and_its_pictures_exist(self):
        page = (SOURCE / "docs/speed.md").read_text()
        self.assertEqual(page.count(table.SUMMARY_BEGIN), 1)
        self.assertEqual(page.count(table.SUMMARY_END), 1)
        sources = re.findall(r'(?:src|srcset)="([^"]+)"', page)
        self.assertEqual(len(sources), 6)
        for source in sources:
            self.assertTrue((SOURCE / "docs" / source).exists(), source)


if __name__ == "__main__":
    unittest.main()
