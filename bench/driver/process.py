"""One run of a program that shows a window: from its start to the end of its last process."""

import ctypes
import json
import os
import signal
import subprocess
import threading
import time
from dataclasses import dataclass
from urllib.parse import parse_qs, urlsplit

PR_SET_CHILD_SUBREAPER = 36
LIMIT_IN_SECONDS = 300

libc = ctypes.CDLL(None, use_errno=True)
# Processes that a program leaves, above all those of WebKit, become children of this one, which
# waits for them, so that they use no processor time during the next run.
libc.prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)


@dataclass
class Run:
    """Times are in milliseconds since the start of the process."""

    started: int  # nanoseconds on the monotonic clock
    started_epoch: float  # milliseconds since the epoch, the clock of a page
    exit: float
    cpu: float  # of the user-interface process alone
    answer: object  # what the page left with, from JSON


def processor_time(pid):
    """Nanoseconds of processor time that the process, which may have ended, has used."""
    clock = ctypes.c_int()
    error = libc.clock_getcpuclockid(pid, ctypes.byref(clock))
    if error != 0:
        raise OSError(error, os.strerror(error))
    return time.clock_gettime_ns(clock.value)


def end_group(group):
    try:
        os.killpg(group, signal.SIGKILL)
    except ProcessLookupError:
        pass


def wait_for_group(group):
    while True:
        try:
            os.waitpid(-group, 0)
        except ChildProcessError:
            return


def read_answer(stage):
    """The response in the result file; a plain window prints the whole exit URL instead."""
    text = stage.answer.read_text(encoding="utf-8")
    if text.startswith("tvk://"):
        text = parse_qs(urlsplit(text.strip()).query)["response"][0]
    return text


def run(
    stage, display, command, observe=None, parse=json.loads, variables=None, output=None
):
    """Runs the program to its end. `observe` is called with the process's number as soon as it
    has started, and returns before its end. `variables` are added to the environment. `output` is
    the standard output; without it, that is the file of the answer."""
    stage.answer.unlink(missing_ok=True)
    with open(stage.errors, "wb") as errors, open(stage.answer, "wb") as answer:
        started_epoch = time.time_ns() / 1e6
        started = time.monotonic_ns()
        process = subprocess.Popen(
            command,
            stdin=subprocess.DEVNULL,
            stdout=answer if output is None else output,
            stderr=errors,
            env=stage.environment(display.name) | (variables or {}),
            process_group=0,
        )
    limit = threading.Timer(LIMIT_IN_SECONDS, end_group, [process.pid])
    limit.start()
    try:
        if observe:
            observe(process.pid)
        os.waitid(os.P_PID, process.pid, os.WEXITED | os.WNOWAIT)
        ended = time.monotonic_ns()
        cpu = processor_time(process.pid)
        status = process.wait()
        wait_for_group(process.pid)
    except BaseException:
        end_group(process.pid)
        raise
    finally:
        limit.cancel()
    if status != 0:
        raise RuntimeError(f"{command[0]} ended with {status}: {stage.errors.read_text()}")
    result = parse(read_answer(stage))
    if isinstance(result, dict) and "error" in result:
        raise RuntimeError(f"the page of {command} failed: {result['error']}")
    return Run(started, started_epoch, (ended - started) / 1e6, cpu / 1e6, result)
