"""Runs the real host on an X server of its own, as a product does."""
import contextlib
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(SOURCE / "scripts"))
import xserver  # noqa: E402

BUILD = pathlib.Path(os.environ.get("TOVIK_BUILD", SOURCE / "build/dev"))
SANITIZER = os.environ.get("SANITIZER_LIBRARY", "")
PATIENCE = 60  # seconds
# What the engine's other processes and the drivers say on standard error, which depends on their version.
ENGINE_LINES = re.compile(r"^\n?(\*\* )?\((process|WebKit\w+):\d+\): .*\n|^libEGL .*\n", re.M)
PRELUDE = """<!doctype html><meta charset="utf-8"><body><script>
const exit = (status, response) => { location.href = 'tvk://exit?status='
    + encodeURIComponent(status) + '&response=' + encodeURIComponent(response); };
"""


class Shell(unittest.TestCase):
    screen = "1280x1024"
    window_manager = False

    def setUp(self):
        folder = tempfile.TemporaryDirectory(ignore_cleanup_errors=True)
        self.dir = pathlib.Path(self.enterContext(folder)).resolve()
        self.host = str(BUILD / "bin/tovik")
        self.store = self.dir / "result"
        self.runtime = self.dir / "runtime"
        self.runtime.mkdir()
        self.environment = os.environ | {
            "DBUS_SESSION_BUS_ADDRESS": "disabled:", "G_DEBUG": "fatal-criticals",
            "HOME": str(self.dir), "XDG_RUNTIME_DIR": str(self.runtime),
            "TEST_PLUGIN_LOG": str(self.dir / "log")}
        if SANITIZER:
            log = f"log_path={self.dir}/sanitizer"
            self.environment |= {
                "LD_PRELOAD": SANITIZER, "ASAN_OPTIONS": "detect_leaks=1:" + log,
                "UBSAN_OPTIONS": "print_stacktrace=1:" + log,
                # Without the first, the leak check itself crashes in the user-interface process.
                "LSAN_OPTIONS": "use_tls=0:exitcode=0"}
        self.addCleanup(self.check_sanitizer_logs)
        self.display, self.environment["DISPLAY"] = xserver.start(self.screen, self.spawn)
        if self.window_manager:
            own = {name: self.environment[name] for name in ("DISPLAY", "HOME")}
            self.spawn(["openbox"], env=os.environ | own, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
            self.until(lambda: "window id" in self.ask("xprop -root _NET_SUPPORTING_WM_CHECK"))

    def desktop(self):
        """The environment without what only the host is given."""
        return {k: v for k, v in self.environment.items() if not k.endswith(("PRELOAD", "OPTIONS"))}

    def spawn(self, command, **options):
        process = subprocess.Popen(command, **options)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def until(self, condition, patience=PATIENCE):
        """Waits until the condition holds and returns its value."""
        deadline = time.monotonic() + patience
        while not (value := condition()):
            self.assertLess(time.monotonic(), deadline, "the condition never held")
            time.sleep(0.02)
        return value

    def ask(self, command):
        """What a command prints on the display."""
        return subprocess.run(command, shell=True, env=self.desktop(), text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout

    def page(self, script, name="page.html"):
        """Writes a page of this script, which may call exit(status, response)."""
        path = self.dir / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(PRELUDE + script + "\n</script>")
        return path.as_uri()

    def install(self, plugin=None, library="libtovikgui.so", name="libtovik.so"):
        """Makes an installation of the test's own, which later starts use."""
        lib = self.dir / "opt/lib"
        self.host = str(self.dir / "opt/bin/tovik")
        files = {self.host: BUILD / "bin/tovik", lib / library: BUILD / "lib/libtovikgui.so"}
        if plugin:
            files[lib / name] = BUILD / f"tests/plugins/{plugin}/libtovik.so"
        for target, source in files.items():
            pathlib.Path(target).parent.mkdir(parents=True, exist_ok=True)
            # A process of an earlier start may still have the former file mapped.
            shutil.copy(source, self.dir / "copy")
            (self.dir / "copy").rename(target)
        return lib

    def start(self, *arguments, command=None):
        """Starts the host with these arguments and, without "--print", "-store"."""
        self.store.unlink(missing_ok=True)
        if not {"-store", "--print"} & set(arguments):
            arguments = (*arguments, "-store", self.store)
        # Into files: a pipe fills up, and the engine's own processes keep it open for a while. Those
        # of an earlier start may still write to the former ones.
        for name in ("trace", "errors"):
            (self.dir / name).unlink(missing_ok=True)
        with open(self.dir / "trace", "w") as trace, open(self.dir / "errors", "w") as errors:
            self.process = self.spawn([*(command or [self.host]), *arguments], cwd=self.dir,
                                      env=self.environment, stdout=trace, stderr=errors)

    def finish(self, status=0):
        """Waits for the host to end with this status and returns the text of the result file."""
        self.process.wait(PATIENCE)
        self.trace, self.errors = ((self.dir / name).read_text(errors="replace")
                                   for name in ("trace", "errors"))
        self.errors = ENGINE_LINES.sub("", self.errors)
        self.assertEqual(self.process.returncode, status, self.errors)
        return self.store.read_text() if self.store.exists() else None

    def run_host(self, *arguments):
        self.start(*arguments)
        return self.finish()

    def log(self):
        """What the test plug-in wrote down."""
        log = self.dir / "log"
        return log.read_text() if log.exists() else ""

    def end(self):
        self.process.kill()
        self.process.wait()

    def window(self):
        return self.until(
            lambda: self.ask(f"xdotool search --onlyvisible --pid {self.process.pid}").strip())

    def close_window(self):
        """Closes the window as a user does, again and again until the host has ended."""
        def closed():
            self.ask(f"xdotool windowactivate --sync {window} key alt+F4")
            return self.process.poll() is not None

        window = self.window()
        self.until(closed)

    def answer_by_keyboard(self):
        """Enters a name in every window until the process has ended; returns what it printed."""
        def typed():
            self.ask("xdotool search --onlyvisible --class '^(tovik|ab|ask|try)$'"
                     " windowactivate --sync && xdotool type Ada && xdotool key Return")
            return self.process.poll() is not None

        self.until(typed)
        return self.process.communicate()

    def expect(self, command, expected):
        """Waits until the command, given the host's window, prints what is expected."""
        command = command.replace("WINDOW", self.window())
        deadline = time.monotonic() + PATIENCE
        while (seen := self.ask(command).strip()) != expected and time.monotonic() < deadline:
            time.sleep(0.02)
        self.assertEqual(seen, expected, command)

    def engine_processes(self):
        """The engine's processes that still run; they end a little after the host."""
        mark = f"XDG_RUNTIME_DIR={self.runtime}\0".encode()
        for environment in pathlib.Path("/proc").glob("[0-9]*/environ"):
            with contextlib.suppress(OSError):
                if mark in environment.read_bytes():
                    yield int(environment.parent.name)

    def check_sanitizer_logs(self):
        """Only reports of our own code count: GTK and WebKit have hundreds of leaks of their own."""
        deadline = time.monotonic() + 10
        while any(self.engine_processes()) and time.monotonic() < deadline:
            time.sleep(0.02)
        for process in self.engine_processes():  # a sanitizer has stopped it in its last check
            os.kill(process, signal.SIGKILL)
        for log in self.dir.glob("sanitizer.*"):
            text = log.read_text(errors="replace")
            # As the web process ends, a thread of the engine and libEGL may free the same memory.
            if re.search(r"double-free on \S+ in thread T\d+ \(SkiaGPUWorker\)", text):
                continue
            self.assertNotIn("runtime error:", text)
            self.assertNotIn("ERROR: AddressSanitizer", text)
            for report in text.split("\n\n"):
                first_caller = next((x for x in report.splitlines() if "    #1 " in x), "")
                self.assertNotIn(str(SOURCE), first_caller if " leak of " in report else "")
