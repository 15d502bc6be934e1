"""Where the time of a start goes: the phases of the host's start and of the bare window's."""

from functools import partial
from statistics import median

import plot
from pairs import alternate
from process import run

# The phases in their order, each with the mark at its end.
PHASES = {
    "dynamic loading": "loaded",
    "GTK": "ready",
    "view and window": "window",
    "web process": "web-process",
    "first page script": "script",
    "first frame": "frame",
    "answer": "answer",
    "exit": "exit",
}


def read_marks(text):
    """Nanoseconds by name. A web process initialises GTK too, later than its parent."""
    times = {}
    for line in text.splitlines():
        name, time = line.split()
        times.setdefault(name, int(time))
    return times


def measure(stage, display, command):
    """Milliseconds from the start of the process to the end of each phase."""
    file = stage.directory / "marks"
    file.unlink(missing_ok=True)
    watched = {"LD_PRELOAD": stage.tools / "libbench-marks.so", "BENCH_MARKS": file}
    result = run(stage, display, command, variables=watched)
    marks = read_marks(file.read_text(encoding="ascii"))
    times = {name: (time - result.started) / 1e6 for name, time in marks.items()}
    script, frame = (time - result.started_epoch for time in result.answer)
    times |= {"script": script, "frame": frame, "exit": result.exit}
    return [times[mark] for mark in PHASES.values()]


def durations(runs):
    """The length of each phase, between the medians of its ends."""
    ends = [median(column) for column in zip(*runs)]
    return [end - begin for begin, end in zip([0, *ends], ends)]


def rows(stage, display, rounds):
    """Draws and prints; there is nothing to judge."""
    url = stage.page_url("start.html")
    host, bare = (
        partial(measure, stage, display, command)
        for command in (stage.host_command(url), stage.window_command("bench-bare", url))
    )
    pairs = [pair for _ in range(rounds) for pair in alternate(host, bare)]
    phases = {
        name: dict(zip(PHASES, durations(runs)))
        for name, runs in zip(("tovik", "bare window"), zip(*pairs))
    }
    for name, lengths in phases.items():
        print(f"{name}:", ", ".join(f"{phase} {time:.1f} ms" for phase, time in lengths.items()))
    plot.write_bars(stage.plots, "start", "Where the time of a start goes", phases)
    return []
