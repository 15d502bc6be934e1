"""The start-up of the host against that of the bare window."""

import os
import time
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
PRINT_WANTED = 1.03


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


def measure_print(stage, display, command):
    """Milliseconds until the answer can be read from standard output."""
    reader, writer = os.pipe()
    arrived = 0

    def receive(_):
        nonlocal arrived
        os.close(writer)
        answer = os.read(reader, 4096)
        arrived = time.monotonic_ns()
        stage.answer.write_bytes(answer)

    result = run(stage, display, command, receive, output=writer)
    os.close(reader)
    return [(arrived - result.started) / 1e6]


def measure_exit(stage, display, command):
    return [run(stage, display, command).exit]


def print_row(stage, display, rounds, url):
    """What a caller waits for: the answer, against the end of a window without one."""
    answered = partial(measure_print, stage, display, stage.print_command(url))
    ended = partial(measure_exit, stage, display, stage.window_command("bench-bare", url))
    (comparison,) = compare(answered, ended, rounds)
    what, reference = "start-up: answer of tovik --print", "exit of the bare window"
    return paired_row(what, reference, comparison, milliseconds, PRINT_WANTED)


def rows(stage, display, rounds):
    url = stage.page_url("start.html")
    host, bare = (
        partial(measure, stage, display, command)
        for command in (stage.host_command(url), stage.window_command("bench-bare", url))
    )
    for measured in (host, bare):  # brings the files into memory; its times are not kept
        measured()
    starts = [
        paired_row(f"start-up: {what}", "bare window", comparison, milliseconds, wanted)
        for (what, wanted), comparison in zip(WANTED.items(), compare(host, bare, rounds))
    ]
    return [*starts, print_row(stage, display, rounds, url)]
