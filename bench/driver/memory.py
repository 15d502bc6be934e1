"""Peak memory of the user-interface process and the web process against that of the bare window."""

import re
import time
from pathlib import Path
from statistics import median

from process import run
from table import cost_row, memory_size

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
    return peaks


def rows(stage, display, rounds):
    url = stage.page_url("linger.html")
    commands = (stage.host_command(url), stage.window_command("bench-bare", url))
    turns = []
    for _ in range(-(-rounds // 5)):
        turns.append([measure(stage, display, command) for command in commands])
    return [
        cost_row(
            f"peak memory: {name} process",
            "bare window",
            *(median(getattr(peaks, field) for peaks in column) for column in zip(*turns)),
            memory_size,
            WANTED,
        )
        for field, name in (("host", "user-interface"), ("web", "web"))
    ]
