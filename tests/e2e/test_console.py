"""What the host says of a page that goes wrong, and what it keeps from other programs."""
import pathlib
import re
import resource
import socket
import threading
import unittest
import urllib.request

from server import serve
from shell import ENGINE_LINES, SANITIZER, Shell

FAULTS = r"""<!doctype html><link rel="stylesheet" href="/status?404">
<iframe srcdoc="<script>console.warn('in a frame')</script>"></iframe><script>
console.log('a\nb', {c: 1}, new Error('d'), '\u001b\u202e', Symbol('e'), 'x'.repeat(9000));
console.assert(true, 'f'); console.assert(false, 'f');
Promise.reject(new TypeError('g'));
fetch('/status?503');
setTimeout(() => { console.error = JSON.stringify = String.prototype.split = null; missing(); });
setTimeout(() => { const call = new XMLHttpRequest(); call.open('GET', '/hold', false); call.send(); }, 300);
</script>"""
SEEN = ["ADDRESS/status?404: HTTP status 404\n", "console.warn about:srcdoc",
        r'console.log ADDRESS/page:3:12: a\x0Ab {"c":1} Error: d \x1B\xE2\x80\xAE Symbol(e) xxx',
        "console.assert ADDRESS/page:4:42: f\n", "rejection ADDRESS/page:5:29: TypeError: g\n",
        "not loaded ADDRESS/status?503: HTTP status 503\n",
        "exception ADDRESS/page:7:91: ReferenceError: Can't find variable: missing\n",
        "page: the web process does not respond"]
CRASHED = ("tovik: the web process has crashed, often in the plug-in; close the window and run"
           " tovik-plugin-check\n")


class Console(Shell):
    window_manager = True

    def says(self, text):
        """Waits until standard error holds the text, which must not need the end of the run."""
        self.until(lambda: text in (self.dir / "errors").read_text(errors="replace"))
        self.assertIsNone(self.process.poll())

    def test_each_fault_of_a_page_is_named(self):
        address = serve(self, FAULTS, hold=(hold := threading.Event()))
        self.start("--console", "-url", address + "/page")
        for text in SEEN:
            self.says(text.replace("ADDRESS", address))
        hold.set()
        self.says("page: the web process responds again")
        self.end()
        text = ENGINE_LINES.sub("", (self.dir / "errors").read_text())
        self.assertTrue(all(line.startswith("page: ") for line in text.splitlines()), text)
        for page, name in ((self.page("</script><script src=none.js>"), "none.js"), ("file:///none", "none")):
            self.start("--console", "-url", page)
            self.says(f"{name}: Error opening file")
            self.end()
        (self.dir / "worker.js").write_text("console.log('unseen'); missing()")
        self.start("--console", "-url", self.page("new Worker('worker.js'); new Worker('none.js')"))
        self.says(f"exception {self.dir.as_uri()}/worker.js:1:31: ReferenceError: Can't find variable: missing\n")
        self.says("/none.js: Error opening file")
        self.end()
        self.start("-url", self.page("console.log(1); missing()"))
        self.close_window()
        self.finish()
        self.assertEqual(self.errors, "")

    def test_crash_is_no_cancel(self):
        self.install("newer")
        for option, status, output, answer in [("-wait", 0, "", "CKR_CANCEL"), ("--print", 4, "", None)]:
            self.start(option, "-title", "asked", "-url", self.page("onload = () => Tovik.Invoke('abort')"))
            self.says(CRASHED)
            self.until(lambda: self.ask(
                "xdotool windowactivate --sync $(xdotool search --onlyvisible --name asked) key alt+F4")
                + str(self.process.poll()) != "None")
            self.assertEqual(self.finish(status), answer)
            self.assertEqual((self.trace, self.errors), (output, CRASHED))

    def test_missing_start_page_is_named(self):
        lib = self.install(library="libabgui.so", name="libab.so")
        self.host = str(pathlib.Path(self.host).rename(self.dir / "opt/bin/ab"))
        places = f"looked in {lib}/, {self.dir}/x, /etc/ab/\n"
        for words, text in [
                (["-url", "none.html", "-root", f"{self.dir}/x"], "none.html; " + places),
                (["-root", f"{self.dir}/x"],
                 "index.html (or what the plug-in's default options say); " + places),
                (["-url", "res://none"], "the plug-in has no res://none; correct -url\n")]:
            self.start(*words)
            self.says("tovik: start page not found: " + text)
            self.end()

    @unittest.skipIf(SANITIZER, "its runtime limits core dumps itself")
    def test_nothing_reads_a_run_unless_it_is_asked_for(self):
        hard = resource.getrlimit(resource.RLIMIT_CORE)[1]
        self.addCleanup(resource.setrlimit, resource.RLIMIT_CORE, resource.getrlimit(resource.RLIMIT_CORE))
        resource.setrlimit(resource.RLIMIT_CORE, (hard, hard))
        self.environment |= {"WEBKIT_INSPECTOR_SERVER": "127.0.0.1:0", "WEBKIT_INSPECTOR_HTTP_SERVER": "127.0.0.1:0"}
        page = self.page("document.title = 'shown'")
        for words, core, limit in [([], "", 0), ([], "1", hard), (["--inspect"], "", hard)]:
            self.environment["TOVIK_CORE"] = core
            self.start("-url", page, *words)
            window = self.window()
            web = int(self.until(lambda: self.ask(f"pgrep -P {self.process.pid} WebKitWeb")))
            given = pathlib.Path(f"/proc/{web}/environ").read_bytes()
            self.assertEqual(resource.prlimit(web, resource.RLIMIT_CORE)[0], limit)
            self.assertEqual(b"WEBKIT_INSPECTOR_HTTP_SERVER" in given, bool(words))
            self.assertNotIn(b"WEBKIT_INSPECTOR_SERVER", given)
            if words:
                self.says("or press F12\n")
                url = re.search("page at (http:.*?),", (self.dir / "errors").read_text())[1]
                self.until(lambda: page.encode() in urllib.request.urlopen(url).read())
                self.until(lambda: self.ask(f"xdotool windowactivate --sync {window} key F12;"
                                            " xdotool search --onlyvisible --name '^Web Inspector$'"))
            self.end()
        self.start("-url", page, "--inspect=70000")
        self.finish(2)

    def test_inspector_waits_for_the_port_of_the_process_that_restarts(self):
        with socket.create_server(("127.0.0.1", 0)) as taken:
            words = "-url", self.page(""), f"--inspect={taken.getsockname()[1]}"
            self.start(*words)
            self.finish(2)
            self.assertRegex(self.errors, "^tovik: cannot serve the inspector on port .*; give another\n$")
            self.start(*words)
            status = pathlib.Path(f"/proc/{self.process.pid}/status")
            self.until(lambda: "State:\tS" in status.read_text() and "Name:\ttovik" in status.read_text())
        self.says("tovik: inspect the page at ")

    def test_language_of_a_page_is_one(self):
        page = self.page("exit('OK', new Intl.NumberFormat(navigator.language).format(1.5))")
        for variables in ({"LANG": "C.UTF-8"}, {"LANG": "POSIX", "LANGUAGE": "C"}):
            self.environment |= {"LC_ALL": "", "LC_CTYPE": "", "LANGUAGE": ""} | variables
            self.assertEqual(self.run_host("-url", page), "1.5")
        self.environment |= {"LANG": "C.UTF-8", "LANGUAGE": "de_AT.UTF-8:fr"}
        self.assertEqual(self.run_host("-url", page), "1,5")
