"""What the X server shows of the window."""
import shutil

from shell import SOURCE, Shell

FRAME = ("xwininfo -id WINDOW | awk '/Width|Height/ {print $2} /Absolute/ {print $4}' | xargs")
REMOTE = """let done = 0; setInterval(() => { const request = new XMLHttpRequest();
request.onload = () => { const [number, url] = request.response.split(' ');
    if (Number(number) > done) { done = Number(number); location.href = url; } };
request.open('GET', 'command?' + Math.random()); request.send(); }, 20);"""


class Window(Shell):
    def test_frame_follows_the_options(self):
        address = self.page("")
        for options, frame in [  # x, y, width, height
                ("", "480 256 320 512"),
                ("-size 0x01F40190 -position 0x000A0014", "10 20 500 370"),
                ("-fullscreen -size 0x00320032", "0 0 1280 994"),
                ("-size 0x00320032 -resizing", "320 256 640 512"),
                ("-position 0x000A000A -size", "10 0 64 1024"),
                ("-position 0x04B003E8", "960 512 320 512")]:
            with self.subTest(options):
                self.start("-url", address, *options.split())
                self.expect(FRAME, frame)
                self.end()

    def test_resize_is_bounded_and_moves_the_window_back_inside(self):
        for option in ("-resizing", "-verbose"):
            self.start("-url", self.page(REMOTE), "-size", "0x03200276", "-position", "0x01900064",
                       option)
            self.expect(FRAME, "400 100 800 600")
            for number, (action, frame) in enumerate([
                    ("?status=50", "400 100 400 300"), ("?status=50", "400 100 400 300"),
                    ("?status=0", "400 100 800 600"), ("?status=5", "400 100 64 64"),
                    ("?status=0x02800000", "400 100 640 600"), ("?status=0640", "400 100 800 640"),
                    ("?status=150", "80 100 1200 900"), ("?status=999", "0 0 1280 1024"),
                    ("", "0 0 800 600")], 1):
                (self.dir / "new").write_text(f"{number} tvk://resize{action} ")
                (self.dir / "new").rename(self.dir / "command")
                self.expect(FRAME, frame)
            self.expect("xprop -id WINDOW WM_NORMAL_HINTS | awk '/minimum/ {print $5, $7}'", "800 600")
            (self.dir / "command").write_text("10 tvk://exit?status=OK ")
            self.assertEqual(self.finish(), "OK")
            (self.dir / "command").unlink()
        self.assertIn("App - Action: resize\nApp -    Size    150\nApp -    Percent YES\n"
                      "App - Dialog old position 0x01900064\n"
                      "App - Dialog new position 0x00500064\n", self.trace)

    def test_icon_comes_from_the_option_or_the_installation(self):
        lib, address, icon = self.install(), self.page(""), SOURCE / "examples/demo/logo.ico"
        self.environment["G_DEBUG"] = "fatal-warnings"  # an unreadable icon gives none
        (lib / "logo.ico").write_text("no icon")
        for options, count in [((), "0"), (("-icon", icon), "1"), (("-icon", "none"), "0"),
                               (("-icon",), "0"), ((), "1")]:
            self.start("-url", address, *options)
            self.expect("xprop -id WINDOW _NET_WM_ICON | grep -c 'Icon ('", count)
            self.end()
            shutil.copy(icon, lib)


class ManagedWindow(Shell):
    window_manager = True

    def test_title_states_and_hints_follow_the_options(self):
        for options, title, above, limits in [(("-title", "Zugang ü", "-system"), "Zugang ü", "1", "2"),
                                              (("-resizing",), "Tovik", "0", "1")]:
            self.start("-url", self.page(""), *options)
            self.expect("xdotool getwindowname WINDOW", title)
            self.expect("xprop -id WINDOW _NET_WM_STATE | grep -c ABOVE", above)
            self.expect("xprop -id WINDOW WM_NORMAL_HINTS | grep -c 'm size: 320 by 512'", limits)
            self.end()
