"""Peak memory of the user-interface process and the web process against that of the bare window."""

import re
import time
from functools import partial
from pathlib import Path

from pairs import compare
from process import run
from table import memory_size, paired_row

WANTED = 1.01
WEB_PROCESS = "WebKitWebProcess"[:15]  # the kernel keeps 15 characters of a process's name


def status(process):
    """Fields of /proc/.../status; none when the process is gone."""
    try:
        text = (process / "status").read_text(encoding="utf-8")
    except (FileNotFoundError, ProcessLookupError):
        return {}
    return dict(re.findall(r"(\w+):\s*(\S+)", text))


def web_process_of(host):
    for process in Path("/proc").glob("[0-9]*"):
        fields = status(process)
        if fields.get("Name") == WEB_PROCESS and fields.get("PPid") == str(host):
            return process
    return None


class Peaks:
    """Follows the peaks of a run, in KiB, until its processes give up their memory."""

    def __init__(self):
        self.host = 0
        self.web = 0

    def observe(self, host):
        host_process = Path("/proc") / str(host)
        web_process = None
        while "VmHWM" in (fields := status(host_process)):
            self.host = max(self.host, int(fields["VmHWM"]))
            web_process = web_process or web_process_of(host)
            if web_process:
                self.web = max(self.web, int(status(web_process).get("VmHWM", 0)))
            time.sleep(0.02)


def measure(stage, display, command):
    peaks = Peaks()
    run(stage, display, command, peaks.observe)
    if peaks.web == 0:
        raise RuntimeError(f"{command[0]} had no web process")
    return peaks.host, peaks.web


def rows(stage, display, rounds):
    url = stage.page_url("linger.html")
    host, bare = (
        partial(measure, stage, display, command)
        for command in (stage.host_command(url), stage.window_command("bench-bare", url))
    )
    return [
        paired_row(f"peak memory: {name} process", "bare window", comparison, memory_size, WANTED)
        for name, comparison in zip(
            ("user-interface", "web"), compare(host, bare, -(-rounds // 5))
        )
    ]
