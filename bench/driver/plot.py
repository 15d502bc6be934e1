"""Curves as files: the numbers as CSV, the picture as SVG with logarithmic axes."""

import csv
from html import escape
from math import ceil, floor, log10

WIDTH, HEIGHT = 720, 420
LEFT, RIGHT, TOP, BOTTOM = 80, 150, 50, 60
COLOURS = ("#1f6fb2", "#c4541d", "#2f8f4e", "#7a4fa3")


def write(directory, curve):
    directory.mkdir(parents=True, exist_ok=True)
    with open(directory / f"{curve.name}.csv", "w", newline="", encoding="utf-8") as file:
        rows = csv.writer(file, lineterminator="\n")
        rows.writerow([curve.work] + [f"{name} (ms)" for name in curve.series])
        for x in next(iter(curve.series.values())):
            rows.writerow([x] + [f"{times[x]:.6g}" for times in curve.series.values()])
    (directory / f"{curve.name}.svg").write_text(svg(curve), encoding="utf-8")


class Axis:
    """Maps values to pixels; 0, which has no logarithm, stands a decade before the least."""

    def __init__(self, values, begin, end):
        positive = [log10(value) for value in values if value > 0]
        self._zero = floor(min(positive)) - 1
        self._low = self._zero if 0 in values else floor(min(positive))
        self._high = max(ceil(max(positive)), self._low + 1)
        self._begin, self._end = begin, end
        self._has_zero = 0 in values

    def at(self, value):
        place = log10(value) if value > 0 else self._zero
        share = (place - self._low) / (self._high - self._low)
        return self._begin + share * (self._end - self._begin)

    def ticks(self):
        """Value and label of each decade."""
        if self._has_zero:
            yield 0, "0"
        for power in range(self._low + self._has_zero, self._high + 1):
            yield 10.0**power, short(10.0**power)


def short(number):
    for limit, unit in ((1e6, " M"), (1e3, " k")):
        if number >= limit:
            return f"{number / limit:g}{unit}"
    return f"{number:g}"


def text(x, y, words, anchor="middle", size=12):
    return (
        f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" font-size="{size}">'
        f"{escape(words)}</text>"
    )


def line(x1, y1, x2, y2):
    return f'<path d="M{x1:.1f} {y1:.1f}L{x2:.1f} {y2:.1f}" stroke="#ddd"/>'


def grid(x_axis, y_axis):
    right, bottom = WIDTH - RIGHT, HEIGHT - BOTTOM
    for value, label in x_axis.ticks():
        yield line(x_axis.at(value), TOP, x_axis.at(value), bottom)
        yield text(x_axis.at(value), bottom + 18, label, size=11)
    for value, label in y_axis.ticks():
        yield line(LEFT, y_axis.at(value), right, y_axis.at(value))
        yield text(LEFT - 8, y_axis.at(value) + 4, label, "end", 11)


def series(index, name, times, x_axis, y_axis):
    colour = COLOURS[index]
    points = [(x_axis.at(x), y_axis.at(y)) for x, y in times.items()]
    path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
    yield f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="2"/>'
    for x, y in points:
        yield f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3.5" fill="{colour}"/>'
    height = TOP + 12 + 20 * index
    yield f'<circle cx="{WIDTH - RIGHT + 16}" cy="{height - 4}" r="5" fill="{colour}"/>'
    yield text(WIDTH - RIGHT + 27, height, name, "start")


def svg(curve):
    xs = [x for times in curve.series.values() for x in times]
    ys = [y for times in curve.series.values() for y in times.values()]
    x_axis = Axis(xs, LEFT, WIDTH - RIGHT)
    y_axis = Axis(ys, HEIGHT - BOTTOM, TOP)
    parts = [
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}"'
        ' font-family="sans-serif" fill="#222">',
        f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#fff"/>',
        text(LEFT, 28, curve.title[0].upper() + curve.title[1:], "start", 16),
        *grid(x_axis, y_axis),
        text((LEFT + WIDTH - RIGHT) / 2, HEIGHT - 16, curve.work),
        text(LEFT - 8, TOP - 8, "ms", "end", 11),
    ]
    for index, (name, times) in enumerate(curve.series.items()):
        parts += series(index, name, times, x_axis, y_axis)
    return "\n".join(parts + ["</svg>", ""])
