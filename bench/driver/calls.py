"""Calls of the script functions against an empty native function, against a message with reply
across processes, and, for a long text, against the engine's own conversion."""

from statistics import median

from process import run
from table import cost_row, nanoseconds, speed_row


def rows(stage, display, rounds):
    query = f"?rounds={rounds}"
    stage.add_library("libbench-probe.so")
    called = run(stage, display, stage.host_command(stage.page_url("calls.html", query)))
    stage.remove_library("libbench-probe.so")
    sent = run(
        stage, display, stage.window_command("bench-reply", stage.page_url("reply.html", query))
    )
    time = {name: median(times) for name, times in (called.answer | sent.answer).items()}
    nothing, reply = "an empty native function", "a message with reply"
    convert, create = "JSStringGetUTF8CString", "JSStringCreateWithUTF8CString"
    words = "1 MiB that is not ASCII"

    def against_engine(function, reference, ours, theirs):
        return cost_row(
            f"{function}, {words}", reference, time[ours], time[theirs], nanoseconds, 0.80
        )

    return [
        cost_row("Invoke", nothing, time["invoke"], time["nothing"], nanoseconds, 5),
        cost_row("GetProperty", nothing, time["get"], time["nothing"], nanoseconds, 8),
        speed_row("Invoke, times faster", reply, time["invoke"], time["reply"], nanoseconds, 300),
        speed_row("GetProperty, times faster", reply, time["get"], time["reply"], nanoseconds, 300),
        cost_row("SetProperty, 1 MiB", convert, time["set"], time["convert"], nanoseconds, 0.30),
        against_engine("SetProperty", convert, "setWords", "convertWords"),
        against_engine("GetProperty", create, "getWords", "createWords"),
    ]
