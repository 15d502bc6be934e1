"""Faults that a run survives. Run as a program: one line for each, and how many survived."""
import os
import signal
import subprocess
import sys
import time
import unittest

from shell import BUILD, Shell
from test_answers import MALFORMED, Answers
from test_bridge import Crash
from test_run import Run

ALIVE = "exit('OK', 'alive')"


class Faults(Shell):
    window_manager = True

    def test_web_process_killed(self):
        self.install("newer")
        self.start("-url", self.page("Tovik.Invoke('up')"))
        self.until(lambda: "invoke up" in self.log())
        web = self.until(lambda: self.ask(f"pgrep -P {self.process.pid} WebKitWeb").strip())
        os.kill(int(web), signal.SIGKILL)
        self.close_window()
        self.assertEqual(self.finish(), "CKR_CANCEL")

    def test_plugin_aborting_in_the_shell(self):
        self.install("newer")
        self.environment["TEST_UserAgentId"] = "abort"
        self.start("-url", self.page(ALIVE))
        self.assertIsNone(self.finish(-signal.SIGABRT))

    def test_full_disk(self):
        self.run_host("-url", self.page(ALIVE), "-store", "/dev/full")

    def test_home_unset_or_over_long(self):
        for home in (None, "/" + "x" * 100000):
            self.environment.pop("HOME")
            self.environment |= {"HOME": home} if home else {"HOME": ""}
            self.assertEqual(self.run_host("-url", self.page(ALIVE)), "alive")

    def test_large_page_and_response(self):
        text = f"</script><!-- {'x' * 50_000_000} --><script>"
        address = self.page(text + "exit('OK', 'y'.repeat(20000000))")
        self.assertEqual(self.run_host("-url", address), "y" * 20_000_000)

    def test_large_command_line(self):
        lib = self.install()
        host = ("import ctypes, sys; ctypes.CDLL(sys.argv[1]).EntryAdmin(None, None,"
                "('tovik -url %s -store %s ' % tuple(sys.argv[2:4]) + 'a ' * 5000000).encode())")
        self.start("-store", command=["python3", "-c", host, lib / "libtovikgui.so",
                                      self.page(ALIVE), self.store])
        self.assertEqual(self.finish(), "alive")

    def test_corrupt_base64(self):
        self.install("newer")
        self.environment["TEST_Web_page"] = "\x7f=%%% PHA" + "+" * 4096 + "="
        self.start("-url", "res://page")
        self.close_window()
        self.assertEqual(self.finish(), "CKR_CANCEL")

    def test_many_actions(self):
        # A page has a thousand frames at most, so the second thousand are on the next page.
        for name, then in (("first", "location = 'second.html'"), ("second", "exit('OK', 'alive')")):
            frames = "".join(f'<iframe src="tvk://{name}{i}"></iframe>' for i in range(1000))
            self.page(f"onload = () => {{ {then} }}</script>{frames}<script>", name + ".html")
        first = (self.dir / "first.html").as_uri()
        self.assertEqual(self.run_host("-url", first, "-verbose"), "alive")
        self.assertEqual(self.trace.count("App - Action: first"), 1000)
        self.assertEqual(self.trace.count("App - Action: second"), 1000)
        address = self.page(MALFORMED.replace("REPEAT", "30"))
        self.assertEqual(self.run_host("-url", address), "alive")


class LongFaults(Shell):
    def skip_unless_asked_for(self):
        if "FAULTS" not in os.environ:
            self.skipTest("takes minutes; see scripts/faults.sh")

    def test_script_that_outlives_the_wait(self):
        self.skip_unless_asked_for()
        script = self.dir / ".install"
        script.write_text("#!/bin/sh\nexec >/dev/null 2>&1 sleep 150\n")
        script.chmod(0o700)
        start = time.monotonic()
        self.start("-url", self.page("setTimeout(() => { location = 'tvk://install'; }, 0);"
                                     "setInterval(exit, 500, 'OK', 'alive')"))
        self.process.wait(200)
        self.assertEqual(self.finish(), "alive")
        self.assertAlmostEqual(time.monotonic() - start, 100, delta=10)

    def test_hundred_starts_leave_no_process(self):
        self.skip_unless_asked_for()
        address = self.page(ALIVE)
        for _ in range(100):
            self.assertEqual(self.run_host("-url", address), "alive")
        deadline = time.monotonic() + 3
        while left := self.ask(f"grep -lszx HOME={self.dir} /proc/[0-9]*/environ | grep -cvE "
                               "'self|Xvfb'").strip() != "0" and time.monotonic() < deadline:
            time.sleep(0.1)
        self.assertFalse(left)


class OpenerMissing(unittest.TestCase):
    def test_opener_missing(self):
        subprocess.run([BUILD / "tests/util-test", "--gtest_filter=Desktop.Url*"], check=True,
                       stdout=subprocess.DEVNULL)


FAULTS = {
    "web process killed: the window closes, CKR_CANCEL": (Faults, "web_process_killed"),
    "plug-in aborting, throwing, hanging in the web process: the window closes, CKR_CANCEL":
        (Crash, "window_outlives_a_plugin_that_crashes"),
    "plug-in aborting in the shell: SIGABRT, no answer": (Faults, "plugin_aborting_in_the_shell"),
    "result path missing, a directory, too long: passed over":
        (Answers, "result_file_that_cannot_be_written_is_passed_over"),
    "result on a full disk: passed over": (Faults, "full_disk"),
    "HOME unset or over-long: the page answers": (Faults, "home_unset_or_over_long"),
    "no display, no library: one line, exit 3 or 2": (Run, "host_says_what_it_cannot_do"),
    "page of 50 MB, response of 20 MB: whole": (Faults, "large_page_and_response"),
    "2,000 actions, hundreds of malformed ones: the page answers": (Faults, "many_actions"),
    "corrupt base64: the window closes, CKR_CANCEL": (Faults, "corrupt_base64"),
    "command line of 10 MB: the page answers": (Faults, "large_command_line"),
    "over-long and binary option values: the page answers":
        (Answers, "bad_option_values_are_survived"),
    "opener missing: nothing happens": (OpenerMissing, "opener_missing"),
    "script that outlives the wait: 100 s, then the page goes on":
        (LongFaults, "script_that_outlives_the_wait"),
    "100 starts: no process left 3 s later": (LongFaults, "hundred_starts_leave_no_process"),
}

if __name__ == "__main__":
    os.environ["FAULTS"] = "all"
    survived = 0
    for fault, (case, method) in FAULTS.items():
        result = unittest.TestResult()
        case("test_" + method).run(result)
        survived += result.wasSuccessful()
        print("survived" if result.wasSuccessful() else "NOT SURVIVED", "-", fault, flush=True)
        for _, text in result.failures + result.errors:
            print(text)
    print(f"{survived} of {len(FAULTS)} survived")
    sys.exit(survived != len(FAULTS))
