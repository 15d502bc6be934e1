"""The answer on the host's standard output."""
import os
import signal

from server import serve
from shell import PRELUDE, Shell

NONE = "tovik: the dialog ended without an answer\n"
RESTART = PRELUDE + ("fetch('/count').then(r => r.text()).then(text => text.startsWith('1 ')"
                     " ? location = 'tvk://restart' : %s)</script>")


class Print(Shell):
    def prints(self, status, output, errors, *arguments, command=None):
        self.start(*arguments, "--print", command=command)
        self.ends(status, output, errors)

    def ends(self, status, output, errors):
        self.finish(status)
        self.assertEqual((self.trace, self.errors), (output, errors))
        self.assertEqual(list(self.runtime.glob("tovik-*")), [], "left behind")

    def test_answer_is_printed_and_tells_the_exit_status(self):
        self.environment["PATH"] = f"{self.install() / '../bin'}:{os.environ['PATH']}"
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
        self.start("--print", "-verbose", "-url", answer)
        self.finish()
        self.assertEqual(self.trace, "a b\n\n")
        self.assertIn("App - Action: exit\n", self.errors)
        del self.environment["DISPLAY"]
        self.prints(3, "", "tovik: cannot open a display; set DISPLAY or WAYLAND_DISPLAY\n")

    def test_restarted_dialog_gives_the_answer_and_ends_with_the_caller(self):
        address = serve(self, RESTART % "exit('OK', text + location.search)") + "/page?x"
        self.prints(0, "2 Own/1.0?x\n", "", "-url", address, "-useragent", "Own/1.0")
        half = RESTART % "location = 'tvk://resize?status=50'"
        for page, width, number in [("", 320, signal.SIGTERM), (half, 160, signal.SIGINT),
                                    ("", 320, signal.SIGKILL)]:
            if number == signal.SIGKILL:  # leaves its directory behind
                self.environment["XDG_RUNTIME_DIR"] = str(self.dir)
            self.start("--print", "-title", "asked", "-url", serve(self, page) + "/page")
            self.until(lambda: f" {width}x" in self.ask(
                "xdotool search --onlyvisible --name asked getwindowgeometry"))
            self.process.send_signal(number)
            self.ends(-number, "", "")
            self.until(lambda: not self.ask("xdotool search --name asked"))
