"""Faults that a run survives. Others are in the files of their subjects; scripts/faults.sh has
each of them and more happen in turn."""
from shell import Shell

ALIVE = "exit('OK', 'alive')"
MALFORMED = """const urls = ['tvk://', 'tvk://?status=OK', 'tvk://close', 'tvk://%',
    'tvk://exit%3Fstatus', 'tvk://resize?status=%', 'tvk://resize?status=%zz', 'tvk://resize',
    'tvk://resize?status=-1', 'tvk://resize?status=0xZZZZZZZZZ', 'tvk://resize?status=%00',
    'tvk://resize?status=' + '9'.repeat(100000), 'tvk:///exit', 'tvk://' + 'a'.repeat(70000),
    'tvk://exit/?status=OK', 'tvk://EXIT%00?status=OK', 'tvk://Exit?status=\\u0000'];
for (let i = 0; i < 30; ++i) {
    for (const url of urls) {
        const frame = document.createElement('iframe');
        frame.src = url;
        document.body.append(frame);
    }
}
onload = () => setTimeout(exit, 300, 'OK', 'alive');"""


class Faults(Shell):
    window_manager = True

    def test_large_page_and_response(self):
        text = f"</script><!-- {'x' * 50_000_000} --><script>"
        address = self.page(text + "exit('OK', 'y'.repeat(20000000))")
        self.assertEqual(self.run_host("-url", address), "y" * 20_000_000)

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
        self.assertEqual(self.run_host("-url", self.page(MALFORMED), "-verbose"), "alive")
        self.assertIn("App - Action: close\n", self.trace)
