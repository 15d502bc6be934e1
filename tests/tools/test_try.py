"""tovik-try: a trial shows what the folder holds, and leaves nothing behind."""
import signal
import subprocess

from shell import BUILD, PATIENCE, Shell

PLUGIN = BUILD / "tests/plugins/newer/libtovik.so"


class Try(Shell):
    def setUp(self):
        super().setUp()
        self.temporary = self.dir / "tmp"
        self.temporary.mkdir()
        self.environment["TMPDIR"] = str(self.temporary)

    def test_trial_prints_the_answer_and_names_what_is_missing(self):
        self.page("exit('OK', Tovik.GetProperty('Name') + location.search)</script>"
                  "<script src='/x.js'>", "pages/index.html")
        self.environment["TEST_Name"] = "Ada"
        command = (BUILD / "bin/tovik-try", "--plugin", PLUGIN, "--pages")
        for pages, status, texts in (
                (("pages", "--console", "--", "any://x?y"), 0, ("Ada?y\n", 'WRONG start page: names "/x.js"')),
                ((self.page("exit('OK', 'url')", "url.html"), "--", "-size", "0"), 0, ("url\n",)),
                ((self.page("exit('CKR_CANCEL', '')"),), 1, ("CKR_CANCEL\n",)),
                (("none",), 2, ("no folder none",)), (("http://x", "--watch"), 2, ("a server",))):
            done = subprocess.run([*command, *pages], cwd=self.dir, env=self.environment, text=True,
                                  capture_output=True, timeout=PATIENCE)
            self.assertEqual(done.returncode, status, done)
            self.assertEqual([text for text in texts if text not in done.stdout + done.stderr], [])
            self.assertEqual([*self.temporary.iterdir()], [])

    def test_watched_page_follows_the_folder_until_a_signal_ends_the_trial(self):
        text = self.dir / "pages/text.js"
        for number in (None, signal.SIGTERM, signal.SIGKILL):
            self.page("</script><script src='text.js'></script><script>Tovik.Invoke(window.text || 'gone')",
                      "pages/index.html")
            (self.dir / "log").unlink(missing_ok=True)
            text.write_text("text = 'first'")
            self.start("--print", command=[BUILD / "bin/tovik-try", "--watch", "--pages", "pages",
                                           "--plugin", PLUGIN, "--"])
            self.until(lambda: "first" in self.log())
            if number is None:
                text.write_text("text = 'second'")
                self.until(lambda: "second" in self.log())
                text.unlink()
                self.until(lambda: "gone" in self.log())
                self.page("exit('OK', document.compatMode)", "pages/index.html")
                self.finish()
                self.assertEqual(self.trace, "CSS1Compat\n")
            else:
                self.process.send_signal(number)
                self.process.wait(PATIENCE)
            self.until(lambda: not [*self.temporary.iterdir(), *self.engine_processes()])
