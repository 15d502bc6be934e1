"""Curves and bars as files: the numbers as CSV, the picture as SVG, by gnuplot."""

import csv
import subprocess

# gnuplot reads the file of the numbers. A logarithmic axis, which all curves have, has no zero, so 0
# stands a decade before the least amount of work that is plotted.
SCRIPT = """set terminal svg size 720,420 font 'sans-serif,12' background '#ffffff'
set output '{picture}'
set datafile separator ','
set title '{title}'
set xlabel '{work}'
set ylabel '{unit}'
set logscale xy
set format x '%.0s %c'
set format y '%g'
set xrange [{left}:*]
set key outside right top
unset mxtics
unset mytics
set grid linecolor '#dddddd'
set xtics add ('0' {zero})
place(x) = x > 0 ? x : {zero}
plot for [i=2:{columns}] '{numbers}' using (place($1)):i with linespoints linewidth 2 \\
    pointtype 7 pointsize 0.6 title columnheader(i)
"""

BARS = """set terminal svg size 720,420 font 'sans-serif,12' background '#ffffff'
set output '{picture}'
set datafile separator ','
set title '{title}'
set ylabel 'ms'
set style data histograms
set style histogram rowstacked
set style fill solid border rgb '#ffffff'
set boxwidth 0.6
set key outside right top invert
set grid ytics linecolor '#dddddd'
plot for [i=2:{columns}] '{numbers}' using i:xtic(1) title columnheader(i)
"""


def write_bars(directory, name, title, bars):
    """`bars` has the lengths of the parts of each bar, in milliseconds, from below."""
    directory.mkdir(parents=True, exist_ok=True)
    numbers = directory / f"{name}.csv"
    parts = list(next(iter(bars.values())))
    with open(numbers, "w", newline="", encoding="utf-8") as file:
        rows = csv.writer(file, lineterminator="\n")
        rows.writerow(["program"] + [f"{part} (ms)" for part in parts])
        for bar, lengths in bars.items():
            rows.writerow([bar] + [f"{lengths[part]:.1f}" for part in parts])
    script = BARS.format(
        picture=directory / f"{name}.svg", numbers=numbers, title=title, columns=len(parts) + 1
    )
    subprocess.run(["gnuplot"], input=script, text=True, check=True)


def write(directory, curve):
    directory.mkdir(parents=True, exist_ok=True)
    numbers = directory / f"{curve.name}.csv"
    amounts = list(next(iter(curve.series.values())))
    with open(numbers, "w", newline="", encoding="utf-8") as file:
        rows = csv.writer(file, lineterminator="\n")
        rows.writerow([curve.work] + [f"{name} ({curve.unit})" for name in curve.series])
        for x in amounts:
            rows.writerow([x] + [f"{times[x]:.6g}" for times in curve.series.values()])
    zero = min(x for x in amounts if x > 0) / 10
    script = SCRIPT.format(
        picture=directory / f"{curve.name}.svg",
        numbers=numbers,
        title=curve.title[0].upper() + curve.title[1:],
        work=curve.work,
        unit=curve.unit,
        columns=len(curve.series) + 1,
        left=zero if 0 in amounts else min(amounts),
        zero=zero,
    )
    subprocess.run(["gnuplot"], input=script, text=True, check=True)
