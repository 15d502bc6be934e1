"""How the time grows with the work: curves over texts, searches, frames, pages, foreign libraries,
command lines and responses, judged by the most expensive step to ten times the work."""

import base64
from dataclasses import dataclass
from resource import getpagesize
from statistics import median

import micro
import plot
from process import run
from table import Row, cost_row, nanoseconds

WANTED = 15
# What the web process does besides may add some.
PAGE_FAULTS_WANTED = 1.05

THOUSANDS = (10**3, 10**4, 10**5, 10**6)
TEXT_LENGTHS = (1, 10, 100, *THOUSANDS, 5 * 10**6, 10**7, 5 * 10**7)
PAGE_SIZES = (*THOUSANDS, 5 * 10**6, 10**7, 5 * 10**7)
SEARCHED_LENGTHS = (*THOUSANDS, 10**7)
FRAMES = (1, 10, 100, 1000)
FOREIGN_LIBRARIES = (0, 2, 20, 200)
COMMAND_LINE_LENGTHS = (*THOUSANDS, 10**7)
RESPONSE_LENGTHS = (*THOUSANDS, 2 * 10**6, 10**7, 2 * 10**7)


@dataclass
class Curve:
    """Costs by the amount of work, of one or more series over the same amounts."""

    name: str  # of its files
    title: str  # what grows
    work: str  # the unit in which it is counted
    series: dict[str, dict[int, float]]
    unit: str = "ms"


def median_run(stage, display, rounds, command, expected, **options):
    """Milliseconds from the start of the program to its end."""
    runs = [run(stage, display, command, **options) for _ in range(rounds)]
    for result in runs:
        if result.answer != expected:
            raise RuntimeError(f"{command} left with {result.answer} instead of {expected}")
    return median(result.exit for result in runs)


def texts(stage, display, rounds):
    lengths = ",".join(map(str, TEXT_LENGTHS))
    url = stage.page_url("texts.html", f"?rounds={rounds}&lengths={lengths}")
    answer = run(stage, display, stage.host_command(url)).answer
    series = {
        name: {n: median(times[name]) / 1e6 for n, times in zip(TEXT_LENGTHS, answer)}
        for name in answer[0]
    }
    return Curve("texts", "text through a script function", "characters", series)


def searches(stage, _, rounds):
    """Searches for a needle that almost matches everywhere, a 32nd as long as the text."""
    times = micro.primitive_times(stage, rounds, "worst/")
    series = {
        name: {n: times[f"worst/{name}/{n}"] / 1e6 for n in SEARCHED_LENGTHS}
        for name in micro.SEARCHES
    }
    return Curve("searches", "text searched in the worst case", "characters", series)


def frames(stage, display, rounds):
    times = {}
    for count in FRAMES:
        url = stage.page_url("frames.html", f"?frames={count}")
        runs = [run(stage, display, stage.host_command(url)).answer for _ in range(rounds)]
        if any(answer["answered"] != count for answer in runs):
            raise RuntimeError(f"not every one of {count} frames reached the plug-in")
        times[count] = median(answer["time"] for answer in runs)
    return Curve("frames", "frames in a page", "frames", {"page loaded": times})


def page_of(size):
    head = b"<!doctype html><title>Page</title><!-- "
    tail = b" --><script>location.href = 'tvk://exit?status=CKR_OK&response=[]'</script>"
    return head + b"x" * (size - len(head) - len(tail)) + tail


def pages(stage, display, rounds):
    by_file, by_plugin = {}, {}
    file = stage.directory / "page.html"
    encoded = stage.library.parent / "page.base64"
    for size in PAGE_SIZES:
        file.write_bytes(page_of(size))
        command = stage.host_command(file.as_uri())
        by_file[size] = median_run(stage, display, rounds, command, [])
        encoded.write_bytes(base64.b64encode(file.read_bytes()))
        by_plugin[size] = median_run(stage, display, rounds, stage.host_command("res://page"), [])
    series = {"file": by_file, "res://": by_plugin}
    return Curve("pages", "size of the page", "bytes", series)


def foreign_libraries(stage, display, rounds):
    times = {}
    present = 0
    command = stage.host_command(stage.page_url("response.html", "?length=1"))
    for count in FOREIGN_LIBRARIES:
        for number in range(present, count):
            stage.add_library("libbench-foreign.so", f"libforeign{number}.so")
        present = count
        times[count] = median_run(stage, display, rounds, command, 1, parse=len)
    for number in range(present):
        stage.remove_library(f"libforeign{number}.so")
    return Curve("libraries", "foreign libraries beside the plug-in", "libraries", {"run": times})


def command_lines(stage, display, rounds):
    times = {}
    file = stage.directory / "command-line"
    url = stage.page_url("response.html", "?length=1")
    for length in COMMAND_LINE_LENGTHS:
        tail = f" -url {url} -store {stage.answer}"
        padding = " -padding value" * (length // 15 + 1)
        file.write_text("tovik" + padding[: length - len("tovik" + tail)] + tail, encoding="utf-8")
        command = [stage.command_line, stage.library, file]
        times[length] = median_run(stage, display, rounds, command, 1, parse=len)
    return Curve("command-lines", "length of the command line", "bytes", {"run": times})


def responses(stage, display, rounds):
    times = {}
    for length in RESPONSE_LENGTHS:
        command = stage.host_command(stage.page_url("response.html", f"?length={length}"))
        times[length] = median_run(stage, display, rounds, command, length, parse=len)
    return Curve("responses", "length of the response", "characters", {"run": times})


def page_faults(stage, display):
    """Row of the page faults of one call, which are why the time grows from 5 to 50 million characters
    by more than their number: beyond 32 MiB the allocator returns memory and asks for it anew."""
    lengths = (5 * 10**6, 5 * 10**7)
    stage.add_library("libbench-probe.so")
    url = stage.page_url("faults.html", f"?lengths={','.join(map(str, lengths))}")
    few, many = run(stage, display, stage.host_command(url)).answer
    stage.remove_library("libbench-probe.so")
    return cost_row(
        f"growth: page faults of SetProperty, 50 million characters (5 million: {few:.0f})",
        "pages of its text",
        many,
        lengths[1] / getpagesize(),
        "{:.0f}".format,
        PAGE_FAULTS_WANTED,
    )


def amount(number):
    for limit, unit in ((10**6, " million"), (10**3, ",000")):
        if number >= limit:
            return f"{number // limit}{unit}"
    return str(number)


def judge(curve, name, times):
    """The ratio is that of the most expensive step from some amount of work to ten times as much.
    The row states the first amount whose time is twice the shortest one; below it, the fixed cost
    of a call or run hides the growth."""
    steps = {n: times[10 * n] / time for n, time in times.items() if n > 0 and 10 * n in times}
    worst = max(steps, key=steps.get)
    least = min(times.values())
    shows = next((n for n, time in times.items() if time >= 2 * least), None)
    seen = f"grows from {amount(shows)} on" if shows else "does not grow"
    return Row(
        f"growth: {curve.title}, {name}",
        f"a tenth of {amount(10 * worst)} {curve.work}; {seen}",
        nanoseconds(times[10 * worst] * 1e6),
        nanoseconds(times[worst] * 1e6),
        steps[worst],
        WANTED,
    )


def rows(stage, display, rounds):
    measured = []
    curves = (texts, searches, frames, pages, foreign_libraries, command_lines, responses)
    for measure in curves:
        curve = measure(stage, display, -(-rounds // 5))
        plot.write(stage.plots, curve)
        measured += [judge(curve, name, times) for name, times in curve.series.items()]
    return [*measured, page_faults(stage, display)]
