"""The table of results: its rows, their judgement, and its place in the document."""

import os
import re
import subprocess
from dataclasses import dataclass
from pathlib import Path

from pairs import Spread

BEGIN = "<!-- measured: begin -->"
END = "<!-- measured: end -->"


@dataclass
class Row:
    """A ratio and the wanted one, both with two decimals. With `at_most` the ratio is our figure
    divided by the reference's and may not exceed the wanted one; otherwise it is the inverse and
    has to reach it."""

    what: str
    against: str
    ours: str
    theirs: str
    ratio: float
    wanted: float
    at_most: bool = True

    def verdict(self):
        ratio = round(self.ratio, 2)
        met = ratio <= self.wanted if self.at_most else ratio >= self.wanted
        return "met" if met else "missed"

    def ratio_text(self):
        return f"{self.ratio:.2f}"

    def cells(self):
        bound = "at most" if self.at_most else "at least"
        return [
            self.what,
            self.against,
            self.ours,
            self.theirs,
            self.ratio_text(),
            f"{bound} {self.wanted:.2f}",
            self.verdict(),
        ]


@dataclass
class PairedRow(Row):
    """The ratio is the median of those of many pairs, with its interval. It is judged when the
    control shows that the machine is even."""

    spread: Spread = None
    control: Spread = None

    def verdict(self):
        if not self.control.is_even():
            return "not judged"
        return "met" if self.spread.meets(self.wanted) else "missed"

    def ratio_text(self):
        return str(self.spread)


def paired_row(what, reference, comparison, unit, wanted):
    """Row of a comparison pair by pair."""
    return PairedRow(
        what,
        f"{reference} (itself {comparison.control})",
        unit(comparison.ours),
        unit(comparison.theirs),
        comparison.ratio.median,
        wanted,
        spread=comparison.ratio,
        control=comparison.control,
    )


def cost_row(what, against, ours, theirs, unit, wanted):
    """Row of our figure divided by that of the reference."""
    return Row(what, against, unit(ours), unit(theirs), ours / theirs, wanted)


def speed_row(what, against, ours, theirs, unit, wanted):
    """Row of how many times faster we are than the reference."""
    return Row(what, against, unit(ours), unit(theirs), theirs / ours, wanted, False)


def nanoseconds(value):
    for limit, unit in ((1e3, "ns"), (1e6, "µs"), (1e9, "ms")):
        if value < limit:
            return f"{value / limit * 1e3:.3g} {unit}"
    return f"{value / 1e9:.3g} s"


def milliseconds(value):
    return f"{value:.1f} ms"


def memory_size(value):
    """A number of KiB as text."""
    return f"{value / 1024:.1f} MiB"


def render(rows):
    head = ["What", "Against", "Tovik", "Reference", "Ratio", "Wanted", "Verdict"]
    lines = [head] + [row.cells() for row in rows]
    widths = [max(len(line[i]) for line in lines) for i in range(len(head))]
    text = [
        "| " + " | ".join(cell.ljust(width) for cell, width in zip(line, widths)) + " |"
        for line in lines
    ]
    text.insert(1, "|" + "|".join("-" * (width + 2) for width in widths) + "|")
    return "\n".join(text)


def machine_line(rounds):
    cpu = re.search(r"model name\s*: (.*)", Path("/proc/cpuinfo").read_text(encoding="utf-8"))
    webkit = subprocess.run(
        ["pkg-config", "--modversion", "webkit2gtk-4.1"], capture_output=True, text=True, check=True
    ).stdout.strip()
    model = cpu.group(1) if cpu else os.uname().machine
    return f"{model}, {os.cpu_count()} cores, WebKitGTK {webkit}, {rounds} rounds"


def write_document(path, machine, rows):
    """Replaces what stands between the two marks of the document."""
    before, rest = path.read_text(encoding="utf-8").split(BEGIN)
    after = rest.split(END)[1]
    text = f"{before}{BEGIN}\n{machine}\n\n{render(rows)}\n{END}{after}"
    path.write_text(text, encoding="utf-8")
