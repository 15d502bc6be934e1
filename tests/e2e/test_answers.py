"""How a page's answer reaches the result file."""
import time

from shell import Shell

FORM = "document.body.innerHTML = `<form %s>%s</form>`; document.forms[0].submit()"
ANSWERS = [
    ("location = 'tvk://exit?status=CKR_OK&response=abc'", "abc"),
    ("location = 'tvk://exit?status=ERR&response=abc'", "ERR"),
    ("location = 'tvk://exit'", "CKR_CANCEL"),
    ("location = 'tvk://exit?status=&response=abc'", "CKR_CANCEL"),
    ("location = 'tvk://exit?status=ok&response=abc'", "ok"),
    ("exit('OK', 'é€\U0001f600 a+b&c=d%')", "é€\U0001f600 a+b&c=d%"),
    ("location = 'tvk://exit?status=OK&response=a#b'", "a#b"),
    ("exit('OK', document.execCommand('paste'))", "true"),
    # WebKit lower-cases the scheme of a navigation.
    ("location = 'TVK://exit?status=OK&response=abc'", "abc"),
    ("document.body.innerHTML = '<iframe src=\"tvk://exit?status=OK\"></iframe>'", "OK"),
    ("document.body.innerHTML = '<a href=\"tvk://exit?status=OK\">x</a>';"
     "document.querySelector('a').click()", "OK"),
    (FORM % ("action='tvk://exit'", "<input name=status value=OK><input name=response value='a b'>"),
     "a b"),
    (FORM % ("method=post action='tvk://exit?status=OK'", ""), "OK"),
    ("document.head.innerHTML = '<meta http-equiv=refresh content=\"0;tvk://exit?status=OK\">'",
     "OK"),
    ("window.open('tvk://exit?status=A'); setTimeout(exit, 200, 'B', '')", "B"),
]


class Answers(Shell):
    def test_answer_reaches_the_result_file(self):
        for script, result in ANSWERS:
            with self.subTest(script):
                self.assertEqual(self.run_host("-url", self.page(script)), result)

    def test_run_is_traced(self):
        address = self.page("location = 'tvk://exit?response=x'")
        start = time.monotonic()
        self.run_host("-url", address, "-verbose", "-position", "0x000A0014", "-useragent", "A/1",
                      "-wait", "2000")
        self.assertGreater(time.monotonic() - start, 2)
        self.assertEqual(self.trace, f"""App - UserAgent: A/1
App - URL: {address}
App - Screen size 0x05000400
App - Dialog size 0x01400200
App - Dialog position 0x000A0014
App - Action: exit
App -    Status   [null]
App -    Response [null]
""")

    def test_result_file_that_cannot_be_written_is_passed_over(self):
        address = self.page("exit('OK', 'new')")
        for path in (self.dir, self.dir / "none/result", self.dir / ("x" * 300), "/dev/full", ""):
            self.assertIsNone(self.run_host("-url", address, "-store", path))
        self.assertIsNone(self.run_host("-url", address, "-store"))
        older = self.dir / "older"
        older.write_text("an older and longer answer")
        self.run_host("-url", address, "-store", older)
        self.assertEqual(older.read_text(), "new")

    def test_bad_option_values_are_survived(self):
        address = self.page("exit('OK', 'alive')")
        binary = b"\x01\xff\xfe%s%n\x7f"
        for option in ("-title", "-icon", "-size", "-position", "-wait", "-root", "-plugin",
                       "-config", "-useragent"):
            # A pause as long as the large number says would outlast the test.
            for value in ("", binary) if option == "-wait" else ("", binary, "9" * 100000):
                # WebKit refuses a user agent and a directory that are no UTF-8 with a message.
                self.environment["G_DEBUG"] = "" if value == binary else "fatal-criticals"
                with self.subTest(option, value=value[:9]):
                    self.assertEqual(self.run_host("-url", address, option, value), "alive")
