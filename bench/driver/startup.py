"""The start-up of the host against that of the bare window."""

from functools import partial

from pairs import compare
from process import run
from table import milliseconds, paired_row

# What is measured, with the wanted ratio.
WANTED = {
    "window mapped": 1.03,
    "first page script": 1.00,
    "first frame": 1.00,
    "exit": 1.00,
    "CPU of the user-interface process": 1.00,
}


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
    host, bare = (
        partial(measure, stage, display, command)
        for command in (stage.host_command(url), stage.window_command("bench-bare", url))
    )
    for measured in (host, bare):  # brings the files into memory; its times are not kept
        measured()
    return [
        paired_row(f"start-up: {what}", "bare window", comparison, milliseconds, wanted)
        for (what, wanted), comparison in zip(WANTED.items(), compare(host, bare, rounds))
    ]
