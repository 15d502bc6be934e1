"""A display of one's own, and the times at which windows appear on it."""

import select
import subprocess
import sys
from pathlib import Path

sys.path.append(str(Path(__file__).resolve().parents[2] / "scripts"))
import xserver  # noqa: E402


class Display:
    """An X server without a window manager, watched by bench-map-watch."""

    def __init__(self, stage):
        self.name = None
        self._stage = stage
        self._server = None
        self._watch = None
        self._pending = b""

    def __enter__(self):
        self._server, self.name = xserver.start("1280x1024")
        self._watch = subprocess.Popen(
            [self._stage.tools / "bench-map-watch"],
            env=self._stage.environment(self.name),
            stdout=subprocess.PIPE,
            bufsize=0,
        )
        if self._read_line() != b"ready":
            raise RuntimeError("the display cannot be watched")
        return self

    def __exit__(self, *error):
        for process in (self._watch, self._server):
            process.terminate()
            process.wait()

    def first_window_since(self, time):
        """Time at which the first window since `time` was mapped, in nanoseconds."""
        while True:
            mapped = int(self._read_line())
            if mapped >= time:
                return mapped

    def _read_line(self):
        pipe = self._watch.stdout
        while b"\n" not in self._pending:
            if not select.select([pipe], [], [], 10)[0]:
                raise RuntimeError("no window has been mapped")
            data = pipe.read(4096)
            if not data:
                raise RuntimeError("the display is no longer watched")
            self._pending += data
        line, self._pending = self._pending.split(b"\n", 1)
        return line
