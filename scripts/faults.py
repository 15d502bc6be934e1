"""Faults that last minutes, need root, or change the machine around a run, and the faults of the
tests: prints one line for each, and how many were survived. See faults.sh."""
import os
import pathlib
import resource
import signal
import subprocess
import sys
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path[:0] = [str(ROOT / "tests" / room) for room in ("e2e", "sdk")]

from shell import BUILD, PATIENCE, Shell  # noqa: E402

# Nothing here may fill a disk, whatever goes wrong.
LARGEST_FILE = 1 << 30
ALIVE = "exit('OK', 'alive')"
LONG_ANSWER = "exit('OK', 'x'.repeat(300000))"
# Goes on once the test has written the file "go".
AFTER_GO = """let done = false; setInterval(() => { const request = new XMLHttpRequest();
request.onload = () => { if (!done) { done = true; %s; } };
request.open('GET', 'go?' + Math.random()); request.send(); }, 50);"""
OTHERS = [
    "test_faults.Faults", "test_bridge.Crash",
    "test_bridge.Bridge.test_absent_and_failing_plugins_leave_the_page_alive",
    "test_answers.Answers.test_bad_option_values_are_survived",
    "test_answers.Answers.test_result_file_that_cannot_be_written_is_passed_over",
    "test_run.Run.test_entry_admin_splits_its_command_line",
    "test_run.Run.test_host_says_what_it_cannot_do",
]


class Faults(Shell):
    window_manager = True

    def small_disk(self, *options):
        """Mounts a file system of 64 KiB; without root the test is skipped."""
        disk = self.dir / "disk"
        disk.mkdir()
        mount = ["mount", "-t", "tmpfs", "-o", ",".join(("size=64k", *options)), "none", disk]
        if subprocess.run(mount, stderr=subprocess.DEVNULL).returncode != 0:
            self.skipTest("needs root to mount a file system")
        self.addCleanup(subprocess.run, ["umount", "--lazy", disk])
        return disk

    def engine_process(self, name):
        return int(self.until(lambda: self.ask(f"pgrep -P {self.process.pid} {name}").strip()))

    def refused(self, path):
        """With "--print", one line says that the answer cannot be written there."""
        self.start("-url", self.page(ALIVE), "--print", "-store", path)
        self.finish(1)
        self.assertEqual((self.trace, self.errors.count("\n")), ("", 1), self.errors)

    def test_full_disk_under_the_result_file(self):
        store = self.small_disk() / "result"
        self.run_host("-url", self.page(LONG_ANSWER), "-store", store)
        self.assertEqual(store.read_bytes() if store.exists() else b"", b"", "half an answer")

    def test_full_disk_under_the_printed_result_file(self):
        self.start("-url", self.page(LONG_ANSWER), "--print", "-store", self.small_disk() / "result")
        self.finish(1)
        self.assertEqual((self.trace, self.errors.count("\n")), ("", 1), self.errors)

    def test_pipe_as_the_result_file(self):
        pipe = self.dir / "pipe"
        os.mkfifo(pipe)
        self.start("-url", self.page(LONG_ANSWER), "-store", pipe)
        self.assertEqual(pipe.read_text(), "x" * 300000)
        self.finish()
        self.refused(pipe)

    def test_device_as_the_result_file(self):
        for device in ("/dev/zero", "/dev/full"):
            self.refused(device)

    def test_x_server_that_goes_away(self):
        for options in ((), ("--print",)):
            self.start("-url", self.page(""), *options)
            self.until(lambda: self.ask("xdotool search --onlyvisible --class tovik"))
            self.display.kill()
            self.process.wait(PATIENCE)
            self.finish(self.process.returncode)
            self.assertNotEqual((self.process.returncode, self.errors), (0, ""))
            self.assertFalse(self.store.exists())
            self.until(lambda: not any(self.engine_processes()))
            self.display.wait()
            super().setUp()

    def test_web_process_killed(self):
        self.install("newer")
        self.start("-url", self.page("Tovik.Invoke('up')"))
        self.until(lambda: "invoke up" in self.log())
        os.kill(self.engine_process("WebKitWeb"), signal.SIGKILL)
        self.close_window()
        self.assertEqual(self.finish(), "CKR_CANCEL")

    def test_plugin_aborting_in_the_shell(self):
        self.install("newer")
        self.environment["TEST_UserAgentId"] = "abort"
        self.start("-url", self.page(ALIVE))
        self.assertIsNone(self.finish(-signal.SIGABRT))

    def test_network_process_killed(self):
        self.install("newer")
        self.start("-url", self.page("Tovik.Invoke('up');" + AFTER_GO % ALIVE))
        self.until(lambda: "invoke up" in self.log())
        os.kill(self.engine_process("WebKitNetwork"), signal.SIGKILL)
        (self.dir / "go").touch()
        self.assertEqual(self.finish(), "alive")

    def test_plugin_that_hangs_and_a_caller_that_gives_up(self):
        self.install("newer")
        self.start("-url", self.page("Tovik.Invoke('hang')"), "--print")
        self.until(lambda: "invoke hang" in self.log())
        self.process.terminate()
        self.finish(-signal.SIGTERM)
        self.assertEqual(self.trace, "")
        self.until(lambda: not any(self.engine_processes()))

    def test_web_process_out_of_memory(self):
        fill = "for (let i = 0, all = []; i < 32; ++i) { all.push(new Uint8Array(1 << 26).fill(1)); }"
        self.start("-url", self.page(AFTER_GO % fill))
        self.window()
        web = self.engine_process("WebKitWeb")
        data, = (int(line.split()[1]) for line in open(f"/proc/{web}/status") if "VmData" in line)
        resource.prlimit(web, resource.RLIMIT_DATA, (data * 1024 + (1 << 28),) * 2)
        (self.dir / "go").touch()
        self.close_window()
        self.assertEqual(self.finish(), "CKR_CANCEL")

    def test_library_that_is_cut_off(self):
        library = self.install() / "libtovikgui.so"
        whole = library.stat().st_size
        for size in (0, 63, 4096, whole // 2, whole - 1):
            self.install()
            os.truncate(library, size)
            self.start("-url", self.page(ALIVE))
            self.process.wait(PATIENCE)
            with self.subTest(size):
                answer = self.finish(self.process.returncode)
                self.assertIn((self.process.returncode, self.errors.count("\n"), answer), [
                    (2, 1, None), (-signal.SIGBUS, 0, None), (0, 0, "alive")])

    def test_read_only_home(self):
        home = str(self.small_disk("ro"))
        self.environment |= {"HOME": home, "XDG_RUNTIME_DIR": home, "XDG_CACHE_HOME": home}
        self.assertEqual(self.run_host("-url", self.page(ALIVE)), "alive")

    def test_no_descriptors_left(self):
        self.environment["G_DEBUG"] = ""
        for limit in (4, 8, 16, 32, 64):
            self.start("-url", self.page(ALIVE),
                       command=["sh", "-c", f'ulimit -n {limit}; exec "$@"', "sh", self.host])
            self.until(self.closed)
            self.assertIn(self.finish(self.process.returncode), (None, "alive", "CKR_CANCEL"))

    def closed(self):
        """Closes whatever window is open; whether the process has ended."""
        self.ask("xdotool search --onlyvisible --class tovik windowactivate key alt+F4")
        return self.process.poll() is not None

    def test_no_descriptors_left_for_the_result_file(self):
        self.start("-url", self.page(AFTER_GO % ALIVE))
        self.window()
        highest = max(int(name) for name in os.listdir(f"/proc/{self.process.pid}/fd"))
        resource.prlimit(self.process.pid, resource.RLIMIT_NOFILE, (highest + 1, highest + 1))
        (self.dir / "go").touch()
        self.until(self.closed)
        self.assertIn(self.finish(self.process.returncode), (None, "", "alive", "CKR_CANCEL"))

    def test_script_that_outlives_the_wait(self):
        script = self.dir / ".install"
        script.write_text("#!/bin/sh\nexec >/dev/null 2>&1 sleep 150\n")
        script.chmod(0o700)
        start = time.monotonic()
        self.start("-url", self.page("setTimeout(() => { location = 'tvk://install'; }, 0);"
                                     "setInterval(exit, 500, 'OK', 'alive')"))
        self.process.wait(200)
        self.assertEqual(self.finish(), "alive")
        self.assertGreaterEqual(time.monotonic() - start, 100)

    def test_hundred_starts_leave_no_process(self):
        address = self.page(ALIVE)
        for _ in range(100):
            self.assertEqual(self.run_host("-url", address), "alive")
        self.until(lambda: not any(self.engine_processes()))

    def test_scripts_and_openers_that_do_not_exist(self):
        subprocess.run([BUILD / "tests/util-test", "--gtest_brief=1", "--gtest_filter=Desktop.*"],
                       check=True, stdout=subprocess.DEVNULL)


class Lines(unittest.TestResult):
    """Prints one line for each fault: its name first, its outcome at the end."""

    def startTest(self, test):
        super().startTest(test)
        self.outcome = "survived"
        name = test.id().rpartition(".test_")[2].replace("_", " ")
        print(f"{name:70} ", end="", flush=True)

    def addError(self, test, error):
        super().addError(test, error)
        self.outcome = "NOT SURVIVED\n" + self.errors[-1][1]

    def addFailure(self, test, failure):
        super().addFailure(test, failure)
        self.outcome = "NOT SURVIVED\n" + self.failures[-1][1]

    def addSubTest(self, test, subtest, failure):
        super().addSubTest(test, subtest, failure)
        if failure:
            self.outcome = f"NOT SURVIVED {subtest}\n" + (self.failures + self.errors)[-1][1]

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self.outcome = "passed over: " + reason

    def stopTest(self, test):
        super().stopTest(test)
        print(self.outcome)


if __name__ == "__main__":
    resource.setrlimit(resource.RLIMIT_FSIZE, (LARGEST_FILE, LARGEST_FILE))
    names = sys.argv[1:] or ["__main__.Faults", *OTHERS]
    result = Lines()
    unittest.defaultTestLoader.loadTestsFromNames(names).run(result)
    tried = result.testsRun - len(result.skipped)
    lost = {test.id() for test, _ in result.errors + result.failures}
    print(f"{tried - len(lost)} of {tried} survived")
    sys.exit(bool(lost))
