#!/usr/bin/env python3
"""Draws the pictures of docs/speed.md from the rows that table.py wrote.

    pictures.py SPEED.json FOLDER

FOLDER gets three pictures, each for a light and for a dark page:

    speed-summary-THEME.svg   a bar for each group of operations
    speed-bytes-THEME.svg     nanoseconds for a byte, by the size of the string or block
    speed-pairs-THEME.svg     nanoseconds for a pair or name, by their number

Both axes of the last two are logarithmic. The lines differ in colour, in dashes and in the shape of
their points, so that no reader needs to see colours. The colours are those of Okabe and Ito.
"""

import argparse
import collections
import dataclasses
import html
import json
import math
import pathlib
import statistics

from table import BYTES, SIZE, digits

WIDTH = 960
FONT = "system-ui, 'Liberation Sans', Arial, sans-serif"


@dataclasses.dataclass
class Theme:
    name: str
    paper: str
    ink: str
    soft: str
    grid: str
    ours: str
    peer: str
    plain: str


THEMES = [
    Theme("light", "#ffffff", "#1f2328", "#57606a", "#d8dee4", "#0072b2", "#d55e00", "#6e7781"),
    Theme("dark", "#0d1117", "#e6edf3", "#9da7b3", "#30363d", "#56b4e9", "#e69f00", "#9da7b3"),
]


@dataclasses.dataclass
class Panel:
    """A diagram of one operation at several sizes. `operation` is its name without the size."""

    title: str
    unit: str
    operation: str


BYTE_PANELS = [
    Panel("Escape words and spaces", "StringEscape", "escape words and spaces"),
    Panel("Unescape words and spaces", "StringEscape", "unescape words and spaces"),
    Panel("Split", "StringNVP", "split"),
    Panel("Variant from a string", "Variant", "from string"),
    Panel("Overwrite a Variant's string", "Variant", "overwrite, string"),
    Panel("Copy to a new block", "ByteStream", "copy to a new block"),
]
PAIR_PANELS = [
    Panel("Write pairs (serializeNVP)", "StringNVP", "serialize"),
    Panel("Read pairs (deserializeNVP)", "StringNVP", "deserialize"),
    Panel("Running average (averageNVP)", "StringNVP", "average"),
]


# ---- SVG


def number(value):
    return f"{value:.1f}".rstrip("0").rstrip(".")


def tag(name, **attributes):
    words = (f'{key.replace("_", "-")}="{value if isinstance(value, str) else number(value)}"'
             for key, value in attributes.items())
    return f"<{name} {' '.join(words)}/>"


def text(x, y, words, colour, size=13, anchor="start", weight="normal"):
    bold = "" if weight == "normal" else f' font-weight="{weight}"'
    return (f'<text x="{number(x)}" y="{number(y)}" fill="{colour}" font-size="{size}" '
            f'text-anchor="{anchor}"{bold}>{html.escape(words)}</text>')


def line(x1, y1, x2, y2, colour, width=1.0):
    return tag("line", x1=x1, y1=y1, x2=x2, y2=y2, stroke=colour, stroke_width=width)


def picture(height, theme, title, parts):
    head = (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {number(height)}" '
            f'width="{WIDTH}" height="{number(height)}" role="img" font-family="{FONT}">')
    paper = f'<rect width="{WIDTH}" height="{number(height)}" fill="{theme.paper}"/>'
    return "\n".join([head, f"<title>{html.escape(title)}</title>", paper, *parts, "</svg>"]) + "\n"


# ---- lines: who, with its own colour, dashes and points


class Style:
    def __init__(self, words, colour, dashes, point, width):
        self.words, self.colour, self.dashes = words, colour, dashes
        self.point, self.width = point, width

    def points(self, places):
        for x, y in places:
            if self.point == "circle":
                yield tag("circle", cx=x, cy=y, r=3.6, fill=self.colour)
            elif self.point == "square":
                yield tag("rect", x=x - 3.2, y=y - 3.2, width=6.4, height=6.4, fill=self.colour)
            else:
                corners = f"{number(x)},{number(y - 4.2)} {number(x - 3.9)},{number(y + 3)} " \
                          f"{number(x + 3.9)},{number(y + 3)}"
                yield tag("polygon", points=corners, fill=self.colour)

    def draw(self, places):
        corners = " ".join(f"{number(x)},{number(y)}" for x, y in places)
        dashes = {"stroke_dasharray": self.dashes} if self.dashes else {}
        yield tag("polyline", points=corners, fill="none", stroke=self.colour,
                  stroke_width=self.width, **dashes)
        yield from self.points(places)


def styles(theme):
    return {
        "ours": Style("this library", theme.ours, "", "circle", 2.6),
        "peer": Style("the fastest peer", theme.peer, "7 4", "square", 1.8),
        "plain": Style("the plain call", theme.plain, "2 3", "triangle", 1.6),
    }


def legend(theme, x, y):
    for style in styles(theme).values():
        yield from style.draw([(x, y - 4.5), (x + 36, y - 4.5)])
        yield text(x + 46, y, style.words, theme.ink)
        x += 64 + 8 * len(style.words)


# ---- diagrams of cost by size


def curves(rows, panel):
    """For ours, the fastest peer and the plain call: the name, and nanoseconds by size."""
    times = collections.defaultdict(dict)
    for row in rows.get(panel.unit, []):
        name = SIZE.match(row["operation"])
        if name and name["base"] == panel.operation and "threads" not in row:
            size = int(name["number"]) * BYTES.get(name["unit"], 1)
            times[row["role"], row["who"]][size] = row["ns"] / size
    chosen = {}
    for role in ("ours", "peer", "plain"):
        # The peer that has the most sizes; of several, the fastest.
        found = [(-len(by_size), statistics.fmean(map(math.log, by_size.values())), who, by_size)
                 for (r, who), by_size in times.items() if r == role]
        if found:
            _, _, who, by_size = min(found)
            chosen[role] = who, by_size
    return chosen


def size_label(size, in_bytes):
    if in_bytes and size >= 1024:
        return f"{size // 1024 ** 2} MiB" if size >= 1024 ** 2 else f"{size // 1024} KiB"
    return f"{size:,}".replace(",", " ")


def decade_label(exponent):
    return f"{10.0 ** exponent:g}" if exponent < 4 else f"{10 ** exponent:,}".replace(",", " ")


class Diagram:
    """One panel, with the position and the size of its plot."""

    LEFT, TOP, RIGHT, BOTTOM = 46, 40, 24, 26

    def __init__(self, theme, box, ticks, in_bytes):
        self.theme, self.ticks, self.in_bytes = theme, ticks, in_bytes
        x, y, width, height = box
        self.x0, self.x1 = x + self.LEFT, x + width - self.RIGHT
        self.y0, self.y1 = y + self.TOP, y + height - self.BOTTOM

    def draw(self, panel, chosen):
        values = [value for _, by_size in chosen.values() for value in by_size.values()]
        low = math.floor(min(map(math.log10, values)))
        high = max(math.ceil(max(map(math.log10, values))), low + 1)
        first, last = math.log(self.ticks[0]), math.log(self.ticks[-1])

        def place(size, value):
            return (self.x0 + (math.log(size) - first) / (last - first) * (self.x1 - self.x0),
                    self.y1 - (math.log10(value) - low) / (high - low) * (self.y1 - self.y0))

        theme = self.theme
        yield text(self.x0, self.y0 - 24, panel.title, theme.ink, weight="600")
        if "peer" in chosen:
            yield text(self.x0, self.y0 - 9, f"fastest peer: {chosen['peer'][0]}", theme.soft, 11)
        for exponent in range(low, high + 1):
            _, y = place(self.ticks[0], 10.0 ** exponent)
            yield line(self.x0, y, self.x1, y, theme.grid)
            yield text(self.x0 - 6, y + 4, decade_label(exponent), theme.soft, 11, "end")
        for size in self.ticks:
            x, _ = place(size, 10.0 ** low)
            yield line(x, self.y0, x, self.y1, theme.grid, 0.6)
            yield text(x, self.y1 + 16, size_label(size, self.in_bytes), theme.soft, 11, "middle")
        for role in ("plain", "peer", "ours"):
            if role in chosen:
                yield from styles(theme)[role].draw(
                    [place(*point) for point in sorted(chosen[role][1].items())])


def sizes_picture(rows, theme, title, panels, ticks, in_bytes):
    columns, panel_height, top = 3, 236, 44
    width = WIDTH / columns
    drawn = [(panel, chosen) for panel in panels if "ours" in (chosen := curves(rows, panel))]
    if not drawn:
        raise SystemExit("pictures.py: the rows of the pictures are missing")
    parts = [text(14, 24, title, theme.ink, 15, weight="600"), *legend(theme, WIDTH - 500, 24)]
    for i, (panel, chosen) in enumerate(drawn):
        box = (i % columns * width, top + i // columns * panel_height, width, panel_height)
        parts += Diagram(theme, box, ticks, in_bytes).draw(panel, chosen)
    height = top + math.ceil(len(drawn) / columns) * panel_height + 8
    return picture(height, theme, title, parts)


# ---- bars


def bar_colour(theme, mean):
    return theme.ours if mean >= 1 else theme.peer


def summary_picture(summary, theme):
    title = "How many times as fast as the fastest peer"
    left, right, row_height, top = 250, 690, 34, 64
    lowest = min(0.5, *(group["mean"] for group in summary))
    highest = max(2.0, *(group["mean"] for group in summary))
    low, high = math.log(lowest * 0.85), math.log(highest * 1.1)

    def place(ratio):
        return left + (math.log(ratio) - low) / (high - low) * (right - left)

    bottom = top + row_height * len(summary)
    parts = [text(14, 24, title, theme.ink, 15, weight="600"),
             text(WIDTH - 14, 48, "rows faster / equal / slower", theme.soft, 12, "end")]
    for tick in (0.125, 0.25, 0.5, 1, 2, 4, 8, 16):
        if low <= math.log(tick) <= high:
            parts += [line(place(tick), top - 8, place(tick), bottom, theme.ink if tick == 1 else theme.grid),
                      text(place(tick), top - 14, f"{tick:g} ×", theme.soft, 11, "middle")]
    for i, group in enumerate(summary):
        y = top + row_height * i
        mean = group["mean"]
        start, end = sorted((place(1), place(mean)))
        weight = "600" if group["group"] == "All" else "normal"
        after = (end + 7, "start") if mean >= 1 else (start - 7, "end")
        parts += [
            text(14, y + 21, group["group"], theme.ink, weight=weight),
            tag("rect", x=start, y=y + 7, width=max(end - start, 1.5), height=20,
                fill=bar_colour(theme, mean)),
            text(after[0], y + 21, digits(mean), theme.ink, anchor=after[1], weight=weight),
            text(WIDTH - 14, y + 21, f"{group['faster']} / {group['equal']} / {group['slower']}",
                 theme.soft, anchor="end"),
        ]
    parts.append(text(14, bottom + 22, "To the right of 1: this library is faster. To the left: the fastest "
                      "peer is. The scale is logarithmic.", theme.soft, 12))
    return picture(bottom + 36, theme, title, parts)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("speed", type=pathlib.Path)
    parser.add_argument("folder", type=pathlib.Path)
    arguments = parser.parse_args()
    speed = json.loads(arguments.speed.read_text())
    arguments.folder.mkdir(parents=True, exist_ok=True)
    kib = 1024
    for theme in THEMES:
        pictures = {
            "summary": summary_picture(speed["summary"], theme),
            "bytes": sizes_picture(speed["units"], theme, "Nanoseconds for a byte", BYTE_PANELS,
                                   [16, 256, 4 * kib, 64 * kib, kib * kib], True),
            "pairs": sizes_picture(speed["units"], theme, "Nanoseconds for a pair or name",
                                   PAIR_PANELS, [1, 10, 100, 1000, 10_000, 100_000], False),
        }
        for name, content in pictures.items():
            (arguments.folder / f"speed-{name}-{theme.name}.svg").write_text(content)


if __name__ == "__main__":
    main()
