"""The answer on the host's standard output."""
import shutil
import signal

from server import serve
from shell import PATIENCE, PRELUDE, Shell

NONE = "tovik: the dialog ended without an answer\n"
RESTART = PRELUDE + ("fetch('/count').then(r => r.text()).then(text => text.startsWith('1 ')"
                     " ? location = 'tvk://restart' : %s)</script>")


class Print(Shell):
    def setUp(self):
        super().setUp()
        self.runtime = self.dir / "runtime"
        self.runtime.mkdir()
        self.environment["XDG_RUNTIME_DIR"] = str(self.runtime)

    def prints(self, status, output, errors, *arguments, command=None):
        self.start(*arguments, "--print", command=command)
        self.ends(status, output, errors)

    def ends(self, *expected):
        output, errors = self.process.communicate(timeout=PATIENCE)
        self.assertEqual((self.process.returncode, output, errors), expected)
        self.assertEqual(list(self.runtime.glob("tovik-*")), [], "left behind")

    def test_answer_is_printed_and_tells_the_exit_status(self):
        self.environment["PATH"] += f":{self.install() / '../bin'}"
        answer, older = self.page("exit('OK', 'a b\\n')"), self.dir / "older"
        older.write_text("an older answer")
        for status, output, errors, *arguments in [
                (0, "a b\n\n", "", "-url", answer),
                (0, "a b\n\n", "", "-url", answer, "-store", older),
                (0, "ERR\n", "", "-url", self.page("exit('ERR')", "error.html")),
                (1, "CKR_CANCEL\n", "", "-url", self.page("exit('')", "cancel.html")),
                (0, "CKR_CANCEL.\n", "", "-url", self.page("exit('OK', 'CKR_CANCEL.')", "x.html")),
                (1, "", NONE, "-url", answer, "-store", self.dir / "none/answer"),
                (1, "", "tovik: --print needs the name of a file behind -store\n", "-store")]:
            self.prints(status, output, errors, *arguments)
        self.assertEqual(older.read_text(), "a b\n")
        trap = ["sh", "-c", 'trap "" CHLD; exec tovik "$@"', "sh"]
        self.prints(0, "a b\n\n", "", "-url", answer, command=trap)
        self.environment["XDG_RUNTIME_DIR"] = "/none"
        self.prints(0, "a b\n\n", "", "-url", answer)
        del self.environment["DISPLAY"]
        self.prints(3, "", "tovik: cannot open a display; set DISPLAY or WAYLAND_DISPLAY\n")

    def test_trace_stays_out_of_the_answer(self):
        self.start("--print", "-verbose", "-url", self.page("exit('OK', 'x')"))
        output, errors = self.process.communicate(timeout=PATIENCE)
        self.assertEqual(output, "x\n")
        self.assertIn("App - Action: exit\n", errors)

    def test_restarted_dialog_gives_the_answer_and_ends_with_the_caller(self):
        self.prints(0, "2\n", "", "-url",
                    serve(self, RESTART % "exit('OK', text.split(' ')[0])") + "/page")
        for page, width, number in [("", 320, signal.SIGTERM), ("", 320, signal.SIGKILL),
                                    (RESTART % "location = 'tvk://resize?status=50'", 160,
                                     signal.SIGINT)]:
            self.start("--print", "-title", "asked", "-url", serve(self, page) + "/page")
            self.until(lambda: f" {width}x" in self.ask(
                "xdotool search --onlyvisible --name asked getwindowgeometry"))
            self.process.send_signal(number)
            if number == signal.SIGKILL:
                self.process.communicate(timeout=PATIENCE)
            else:
                self.ends(-number, "", "")
            self.until(lambda: not self.ask("xdotool search --name asked"))
            shutil.rmtree(self.runtime)
            self.runtime.mkdir()
