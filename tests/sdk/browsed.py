"""Pages in an ordinary browser, and one page on the mock there and on the real bridge."""
import html
import json
import re
import shutil
import subprocess

from server import serve_folder
from shell import PATIENCE, SOURCE, Shell
from test_bridge import CALLS

CHROMIUM = ("chromium --headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
            "--disable-background-networking --disable-component-update --disable-sync "
            "--virtual-time-budget=3000 --dump-dom").split()
URLS = [
    ("exit()", "tvk://exit"),
    ("exit('CKR_OK', '')", "tvk://exit?status=CKR_OK&response="),
    ("exit('A', 'é +&=#%\\ud800')", "tvk://exit?status=A&response=%C3%A9%20%2B%26%3D%23%25%EF%BF%BD"),
    ("resizePercent(0)", "tvk://resize?status=0"),
    ("resizePercent(999)", "tvk://resize?status=999"),
    ("resizePixels(640, 0)", "tvk://resize?status=0x02800000"),
    ("resizePixels(65535, 10)", "tvk://resize?status=0xFFFF000A"),
    *((call, "RangeError") for call in ("resizePercent(1000)", "resizePercent(1.5)",
                                        "resizePixels(65536, 1)", "resizePixels(1)")),
    *((f"{name}()", f"tvk://{name}") for name in ("reload", "restart", "install", "uninstall")),
]
SURROGATES = "Tovik.EnumProperty('x\\ud800y\\udc00', 'é\\u{1f600}')"


class Browsed(Shell):
    def browse(self, address):
        """The document as it stands when an ordinary browser has run its scripts."""
        if not shutil.which(CHROMIUM[0]):
            self.skipTest("Chromium is not installed")
        return html.unescape(subprocess.run(
            [*CHROMIUM, f"--user-data-dir={self.dir / 'profile'}", address], text=True,
            env=self.desktop(), check=True, capture_output=True, timeout=PATIENCE).stdout)

    def conform(self, folder, scripts):
        """The page in the folder, which loads the SDK by these scripts, finds the same in both."""
        for name in ("conformance.html", "conformance.js"):
            shutil.copy(SOURCE / "tests/sdk" / name, folder)
        page = folder / "conformance.html"
        page.write_text(page.read_text() + scripts)
        calls = [*CALLS, *((f"TovikActions.urls.{call}", url) for call, url in URLS)]
        (folder / "calls.js").write_text(
            f"const CALLS = {json.dumps([call for call, _ in calls] + [SURROGATES])}")
        self.install("newer")
        real = json.loads(self.run_host("-url", page.as_uri()))
        # By a server, as the browser refuses modules from the disk.
        browsed = self.browse(serve_folder(self, folder) + "/conformance.html")
        mock = json.loads(re.search("answer: (.*)</output>", browsed)[1])
        for (call, expected), *values in zip(calls, real["values"], mock["values"]):
            self.assertEqual(values, [expected, expected], call)
        self.assertEqual(real["values"][len(calls):], mock["values"][len(calls):], SURROGATES)
        self.assertEqual(mock["actions"], [
            ["resize", "5%zz0 1", None], ["exit", "OK", "é +&%"], ["exit", "ERR", "x"]])
