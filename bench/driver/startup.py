"""The start-up of the host against that of the bare window, which is also compared with itself."""

from itertools import cycle, islice, permutations
from statistics import median

from process import run
from table import cost_row, milliseconds

# What is measured, with the wanted ratio.
WANTED = {
    "window mapped": 1.03,
    "first page script": 1.00,
    "first frame": 1.00,
    "exit": 1.00,
    "CPU of the user-interface process": 1.00,
}
STEADY = (0.97, 1.03)


def measure(stage, display, command):
    """Milliseconds from the start of the process, in the order of WANTED."""
    result = run(stage, display, command)
    script, frame = result.answer
    mapped = (display.first_window_since(result.started) - result.started) / 1e6
    return [
        mapped,
        script - result.started_epoch,
        frame - result.started_epoch,
        result.exit,
        result.cpu,
    ]


def rows(stage, display, rounds):
    url = stage.page_url("start.html")
    bare = stage.window_command("bench-bare", url)
    contestants = [("bare", bare), ("host", stage.host_command(url)), ("bare again", bare)]
    times = {name: [] for name, _ in contestants}
    for _, command in contestants:  # brings the files into memory; its times are not kept
        measure(stage, display, command)
    # Over the rounds, each runs in every place and after either of the others.
    for order in islice(cycle(permutations(contestants)), rounds):
        for name, command in order:
            times[name].append(measure(stage, display, command))
    return judge(times["host"], times["bare"], times["bare again"])


def medians(times):
    return [median(column) for column in zip(*times)]


def judge(host, bare, again):
    """The host is not judged when the machine is so uneven that the bare window differs from
    itself."""
    against_itself = [b / a for a, b in zip(medians(bare), medians(again))]
    steady = all(STEADY[0] <= ratio <= STEADY[1] for ratio in against_itself)
    return [
        cost_row(
            f"start-up: {what}",
            f"bare window (itself {itself:.2f})",
            ours,
            theirs,
            milliseconds,
            wanted,
            steady,
        )
        for (what, wanted), ours, theirs, itself in zip(
            WANTED.items(), medians(host), medians(bare + again), against_itself
        )
    ]
