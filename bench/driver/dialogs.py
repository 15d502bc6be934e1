"""Many dialogs, one after another and several at a time: what each costs, and what they leave."""

import os
import time
from concurrent.futures import ThreadPoolExecutor, as_completed
from pathlib import Path
from statistics import median

import plot
from growth import Curve
from memory import Peaks
from process import run
from table import Row, cost_row, memory_size, milliseconds

DIALOGS = 20
AT_A_TIME = {"one after another": 1, "4 at a time": 4}
# Wanted ratio of a dialog's cost in the second half to that in the first half.
STRAIGHT = 1.10
NUMBERED = (1, 2, 5, 10, 20)
SHARED_MEMORY = Path("/proc/sysvipc/shm")


def surroundings(*directories):
    """What dialogs could leave: children of this process, to which all orphans come, entries of the
    directories and below the first one, and segments of shared memory."""
    tasks = Path("/proc/self/task").glob("*/children")
    children = {f"process {child}" for task in tasks for child in task.read_text().split()}
    lines = SHARED_MEMORY.read_text(encoding="ascii").splitlines()[1:]
    segments = {f"shared memory {line.split()[1]}" for line in lines}
    files = {os.path.join(where, name) for where in directories for name in os.listdir(where)}
    below = {str(path) for path in directories[0].rglob("*")}
    return children | segments | files | below


def dialog(stage, display, number, page, observed):
    """Runs one dialog; its answer is a file of its own. Returns its peak memory, all its processes
    together, in KiB; 0 when it is not observed."""
    desk = stage.desk(number)
    peaks = Peaks()
    command = desk.host_command(stage.page_url(page))
    run(desk, display, command, peaks.observe if observed else None)
    desk.clear()
    return peaks.host + peaks.web


def measure(stage, display, at_a_time, page, observed):
    """Milliseconds until the first, second, ... dialog and all its processes have ended, and the
    sum of their memory up to then."""
    times, memory = [], [0]
    with ThreadPoolExecutor(at_a_time) as workers:
        started = time.monotonic_ns()
        dialogs = [
            workers.submit(dialog, stage, display, number, page, observed)
            for number in range(DIALOGS)
        ]
        for ended in as_completed(dialogs):
            times.append((time.monotonic_ns() - started) / 1e6)
            memory.append(memory[-1] + ended.result())
    return times, memory[1:]


def judge(what, name, sums, unit):
    """The cost of a dialog in the second half against that in the first."""
    half = DIALOGS // 2
    first, second = sums[half - 1] / half, (sums[-1] - sums[half - 1]) / half
    return cost_row(
        f"growth: {what} of a dialog, {name}, {half + 1}th to {DIALOGS}th",
        f"1st to {half}th",
        second,
        first,
        unit,
        STRAIGHT,
    )


def left_over(before, after):
    """Row of what is there after the dialogs and was not before them."""
    left = sorted(after - before)
    for thing in left:
        print(f"left over: {thing}")
    what = "left over: processes, files, shared memory"
    return Row(what, "before the dialogs", str(len(left)), "0", len(left), 0)


def rows(stage, display, rounds):
    watched = (stage.directory, Path("/tmp"), Path("/dev/shm"))
    # What the engine stores in the home directory once, it stores during this run.
    dialog(stage, display, 0, "linger.html", False)
    before = surroundings(*watched)
    times, memory = {}, {}
    for name, at_a_time in AT_A_TIME.items():
        turns = [
            measure(stage, display, at_a_time, "start.html", False)[0]
            for _ in range(-(-rounds // 5))
        ]
        times[name] = [median(turn) for turn in zip(*turns)]
        memory[name] = measure(stage, display, at_a_time, "linger.html", True)[1]
    result = [judge("time", name, sums, milliseconds) for name, sums in times.items()]
    result += [judge("peak memory", name, sums, memory_size) for name, sums in memory.items()]
    result.append(left_over(before, surroundings(*watched)))
    for file, title, unit, scale, series in (
        ("dialogs", "time of many dialogs", "ms", 1, times),
        ("dialogs-memory", "peak memory of many dialogs, added up", "MiB", 1024, memory),
    ):
        points = {
            name: {n: sums[n - 1] / scale for n in NUMBERED} for name, sums in series.items()
        }
        plot.write(stage.plots, Curve(file, title, "dialogs", points, unit))
    return result
