"""The dialog and the window of another program that it belongs to."""
import re
import subprocess

from shell import BUILD, Shell

MIDDLE = "xwininfo -id WINDOW | awk '/Absolute|Width|Height/ {print $NF}' | xargs"


class Parent(Shell):
    window_manager = True

    def program(self, geometry):
        """Opens a window of another program; returns the program and the window's id."""
        with open(self.dir / "xev", "w") as output:
            program = self.spawn(["stdbuf", "-oL", "xev", "-geometry", geometry], env=self.desktop(),
                                 stdout=output)
        number, = self.until(lambda: re.findall(
            "^Outer window is (0x[0-9a-f]+)", (self.dir / "xev").read_text(), re.M))
        # A window manager that is still starting may overlook the first request.
        self.until(lambda: self.ask(
            f"xdotool windowmap {number}; xprop -id {number} _NET_FRAME_EXTENTS | grep ="))
        return program, number

    def middle(self, window):
        """Twice the place of the middle of the window."""
        x, y, width, height = map(int, self.ask(MIDDLE.replace("WINDOW", window)).split())
        return 2 * x + width, 2 * y + height

    def test_dialog_belongs_to_the_window_of_its_handle(self):
        _, parent = self.program("500x400+600+300")
        number, page = parent.removeprefix("0x"), self.page("")
        centre, corner = self.middle(parent), (2 * 11 + 320, 2 * 40 + 512) # within the frame
        for handle, options, at in [(f"x11:{parent}", "", centre),
                                    (int(parent, 16), "-position 0x000A0014", corner),
                                    (f"x11:{number}", "-size 0x01000100", centre)]:
            self.start("-url", page, "--parent", str(handle), *options.split())
            self.expect("xprop -id WINDOW WM_TRANSIENT_FOR | grep -o '0x.*'", parent)
            window = self.window()
            self.assertIn("TYPE_DIALOG", self.ask(f"xprop -id {window} _NET_WM_WINDOW_TYPE"))
            self.until(lambda: self.middle(window) == at)
            self.ask(f"xdotool windowactivate --sync {parent} windowraise {parent}")
            self.expect("xprop -root _NET_CLIENT_LIST_STACKING | grep -o '[^ ]*$'", hex(int(window)))
            self.end()

    def test_dialog_stays_on_the_screen_and_outlives_the_window(self):
        page = self.page("onkeydown = () => exit('OK', 'alive')")
        for geometry, near in [("300x200-0-0", 2 * 1280 - 320), ("300x200+0+0", 320)]:
            program, parent = self.program(geometry)
            self.start("-url", page, "--parent", parent)
            self.expect("xprop -id WINDOW WM_TRANSIENT_FOR | grep -o '0x.*'", parent)
            x, y = self.middle(window := self.window())
            self.assertTrue(abs(x - near) < 20 and 512 <= y <= 2 * 1024 - 512, (geometry, x, y))
            program.kill()
            self.until(lambda: not self.ask(f"xwininfo -id {parent}"))
            self.until(lambda: self.ask(f"xdotool windowactivate --sync {window} key a")
                       or self.process.poll() is not None)
            self.assertEqual((self.finish(), self.errors), ("alive", ""))

    def test_handle_that_names_no_parent_has_one_line(self):
        program, parent = self.program("100x100")
        program.kill()
        self.until(lambda: not self.ask(f"xwininfo -id {parent}"))
        root = self.ask("xwininfo -root | awk '/Window id/ {print $4}'").strip()
        for handle, fault in [([f"x11:{parent}"], "is no window of another"), ([root], "is no window of another"),
                              (["wayland:x"], "is a window of Wayland"), ([], "is no handle"),
                              (["\u202e\nx"], "is no handle")]:
            answer = self.run_host("-url", self.page("exit('OK', 'alive')"), "--parent", *handle)
            self.assertEqual(answer, "alive")
            self.assertRegex(self.errors, rf'^tovik: --parent ".*" {fault}.*; the dialog has no parent\n$')

    def test_example_goes_on_while_it_waits_for_the_answer(self):
        page = self.page("onkeydown = () => exit('OK', 'signed')")
        caller = self.spawn([BUILD / "examples/caller/caller", self.host, "-url", page], text=True,
                            env=self.environment, stdout=subprocess.PIPE)
        window = self.until(lambda: self.ask("xdotool search --onlyvisible --name Invoices").strip())
        for key in ("a", "alt+F4"):
            self.until(lambda: self.ask(f"xdotool windowactivate --sync {window} key Return")
                       or self.ask("xdotool search --onlyvisible --name Tovik"))
            dialog = self.ask("xdotool search --onlyvisible --name Tovik").strip()
            self.assertIn(hex(int(window)), self.ask(f"xprop -id {dialog} WM_TRANSIENT_FOR"))
            active = dialog if key == "a" else window
            self.until(lambda: self.ask(f"xdotool windowactivate --sync {active} key {key}")
                       or not self.ask("xdotool search --name Tovik"))
        self.assertEqual(caller.communicate()[0], "signed\n")
