"""The answer on the host's standard output, and the ways a run with it ends."""
import os
import resource
import select
import signal
import subprocess

from server import serve
from shell import PATIENCE, PRELUDE, Shell

NONE = "tovik: the dialog ended without an answer\n"
LOST = "tovik: the dialog has failed; its display may be lost\n"
LIMIT = "tovik: cannot print the answer: File too large\n"
CLICK = "xdotool mousemove --window WINDOW 50 50 click 1"
RESTART = PRELUDE + ("fetch('/count').then(r => r.text()).then(text => text.startsWith('1 ')"
                     " ? location = 'tvk://restart' : %s)</script>")
HALF = RESTART % "location = 'tvk://resize?status=50'"


class Print(Shell):
    def prints(self, status, output, errors, *arguments, command=None):
        self.start(*arguments, "--print", command=command)
        self.ends(status, output, errors)

    def ends(self, status, output, errors):
        self.finish(status)
        self.assertEqual((self.trace, self.errors), (output, errors))
        self.leaves_nothing()

    def leaves_nothing(self):
        self.assertEqual(list(self.runtime.glob("tovik-*")), [], "left behind")
        self.until(lambda: not any(self.engine_processes()))

    def asked(self, size):
        """The window of a dialog with the title "asked"."""
        return self.until(lambda: f" {size}" in self.ask(
            "xdotool search --onlyvisible --name asked getwindowgeometry")
            and self.ask("xdotool search --onlyvisible --name asked").strip())

    def test_answer_is_printed_and_tells_the_exit_status(self):
        self.environment["PATH"] = f"{self.install() / '../bin'}:{os.environ['PATH']}"
        answer, older = self.page("exit('OK', 'a b\\n')"), self.dir / "older"
        older.write_text("an older answer")
        os.mkfifo(self.dir / "fifo")
        for status, output, errors, *arguments in [
                (0, "a b\n\n", "", "-url", answer),
                (0, "a b\n\n", "", "-url", answer, "-store", older),
                (0, "ERR\n", "", "-url", self.page("exit('ERR')", "error.html")),
                (1, "CKR_CANCEL\n", "", "-url", self.page("exit('')", "cancel.html")),
                (0, "CKR_CANCEL.\n", "", "-url", self.page("exit('OK', 'CKR_CANCEL.')", "x.html")),
                (1, "", NONE, "-url", answer, "-store", self.dir / "none/answer"),
                *((1, "", f"tovik: {name} is no regular file; correct -store\n", "-store", name)
                  for name in ("fifo", "/dev", "/dev/full")),
                (1, "", "tovik: --print needs the name of a file after -store\n", "-store")]:
            self.prints(status, output, errors, *arguments)
        self.assertEqual(older.read_text(), "a b\n")
        # Beside a child of another program, which sends signals that the caller has it ignore.
        busy = ["bash", "-c", 'trap "" CHLD HUP; while kill -HUP $$; do sleep 0.1; done 2>/dev/null &'
                ' exec tovik "$@" <&- 2>&-', "bash"]
        self.prints(0, "a b\n\n", "", "-verbose", "-url", answer, command=busy)
        self.prints(1, "", "", "-url", answer, "-store", self.dir / "none/answer", command=busy)
        self.start("--print", "-verbose", "-url", answer)
        self.finish()
        self.assertEqual(self.trace, "a b\n\n")
        self.assertIn("App - Action: exit\n", self.errors)
        del self.environment["DISPLAY"]
        self.prints(3, "", "tovik: cannot open a display; set DISPLAY or WAYLAND_DISPLAY\n")

    def test_restarted_dialog_gives_the_answer_and_ends_with_the_caller(self):
        address = serve(self, RESTART % "exit('OK', text + location.search)") + "/page?x"
        (self.dir / "older").write_text("an older answer")
        self.prints(0, "2 Own/1.0?x\n", "", "-url", address, "-useragent", "Own/1.0",
                    "-store", self.dir / "older")
        for page, size, number in [("", "320x", signal.SIGTERM), (HALF, "160x", signal.SIGINT),
                                   ("", "320x", signal.SIGKILL), (HALF, "160x", signal.SIGKILL)]:
            self.start("--print", "-title", "asked", "-url", serve(self, page) + "/page")
            self.asked(size)
            self.process.send_signal(number)
            self.ends(-number, "", "")

    def test_dialog_ends_with_its_reader(self):
        for script, size in [('"$@" | read -t 0.01', ""), ('trap "" TERM; x=$("$@")', "160x")]:
            self.start("--print", "-title", "asked", "-url", serve(self, HALF) + "/page",
                       command=["bash", "-c", script, "bash", self.host])
            if size:
                self.asked(size)
                self.end()
            self.process.wait(PATIENCE)
            self.leaves_nothing()

    def test_failure_to_show_or_to_print_is_told(self):
        page = self.page("onmousedown = () => exit('OK', 'x'.repeat(2000));"
                         "location = 'tvk://resize?status=50'")
        for command, errors in [("xkill -id WINDOW", LOST), (CLICK, LIMIT)]:
            self.start("--print", "-title", "asked", "-url", page)
            window = self.asked("160x")
            resource.prlimit(self.process.pid, resource.RLIMIT_FSIZE, (1000, 1000))
            self.ask(command.replace("WINDOW", window))
            self.ends(1, "", errors)
        # It blocks in a pipe that nobody reads.
        printing = self.spawn([self.host, "--print", "-url", self.page("exit('OK', 'x'.repeat(1e6))")],
                              env=self.environment, stdout=subprocess.PIPE)
        select.select([printing.stdout], [], [], PATIENCE)
        printing.terminate()
        self.assertEqual(printing.wait(PATIENCE), -signal.SIGTERM)
