"""The host, the start page and the actions that reach beyond the window."""
import os
import shutil
import subprocess
import unittest

from server import serve
from shell import BUILD, PRELUDE, SANITIZER, SOURCE, Shell

COUNT = PRELUDE + ("fetch('/count').then(r => r.text())"
                   ".then(text => exit('OK', text + location.search))</script>")

# Runs, then closes the window in a loop of its own while the page goes on to act.
OWN_LOOP = """import ctypes, sys
lib, pointer = ctypes.CDLL(sys.argv[1]), ctypes.c_void_p
lib.gtk_window_list_toplevels.restype = ctypes.POINTER(pointer)
lib.EntryAdmin(None, None, " ".join(sys.argv[1:]).encode())
window = pointer(lib.gtk_window_list_toplevels()[0])
steps = iter((lambda: lib.gtk_widget_destroy(window), lambda: print("went on"), lib.gtk_main_quit))
step = ctypes.CFUNCTYPE(ctypes.c_int)(lambda: next(steps)() or 1)
lib.g_timeout_add(300, step, None)
lib.gtk_main()
"""
# Says how it was started; under the name of the host it is the host, too.
AGAIN = """#!/bin/bash
echo $(grep -hE "Sig(Blk|Ign)" /proc/self/status; ls /proc/self/fd) >>log
[ $0 = .install ] || exec -a $0 opt/bin/tovik "$@"
"""
CHAIN = """setInterval(() => { const log = new XMLHttpRequest(); log.open('GET', 'log', false);
log.send(); const lines = log.responseText.split('\\n').length; lines > 8 ? exit('OK', log.responseText)
    : location.href = lines % 2 ? 'tvk://restart' : 'tvk://install'; }, 20);"""


class Run(Shell):
    def test_server_sees_user_agent_and_query(self):
        address = serve(self, COUNT)
        own = ("-useragent", "Own/1.0")
        for arguments, result in [
                (("-url", address + "/page", *own), "1 Own/1.0"),
                (("-url", address + "/page?a", *own, "x://?b"), "2 Own/1.0?a"),
                ((*own, "-url", address + "/page", "x://?b"), "3 Own/1.0"),
                (("x://y?b=1&c", "-url", address + "/page", *own), "4 Own/1.0?b=1&c"),
                (("-url", address + "/redirect"), "moved")]:
            self.assertEqual(self.run_host(*arguments), result)
        self.assertRegex(self.run_host("-url", address + "/page", "-useragent"), "^5 Mozilla/5.0")
        # A request for credentials is left unanswered: no dialog, which would keep the focus, and
        # no answer of the server; the engine may give the request up.
        page = self.page("onload = () => setTimeout(() => {"
                         f"fetch('{address}/secret').then(answer => exit('OK', answer.status), x => x);"
                         "setTimeout(setInterval, 1000,"
                         " () => document.hasFocus() && exit('OK', 'silence'), 50); })")
        self.assertEqual(self.run_host("-url", page), "silence")

    def test_untrusted_certificate_is_accepted(self):
        key, certificate = self.dir / "key.pem", self.dir / "certificate.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj",
                        "/CN=elsewhere", "-keyout", key, "-out", certificate],
                       check=True, stderr=subprocess.DEVNULL)
        certificate.write_text(certificate.read_text() + key.read_text())
        address = serve(self, PRELUDE + "exit('OK', location.protocol)</script>", certificate)
        self.assertEqual(self.run_host("-url", address), "https:")

    def test_reload_loads_the_start_page_or_ends_the_run_for_a_redirect(self):
        reload = "setTimeout(() => { location = 'tvk://reload'; })"
        self.page(reload, "other.html")
        for name, change in [("ü.html#a", "location.hash = 'b';" + reload), ("page.html#a", reload),
                             ("page.html#a", "history.pushState(0, '', '#b');" + reload),
                             ("page.html#a", "location = 'other.html?x'")]:
            self.page("if (window.name) { exit('OK', location.search + location.hash); }"
                      f"else {{ window.name = 'seen'; {change} }}", name[:-2])
            self.assertEqual(self.run_host("-url", f"file://{self.dir}/{name}"), "#a")
        address = self.page("location = 'tvk://reload'; setTimeout(exit, 500, 'OK', 'on')")
        self.assertEqual(self.run_host("x://y?other=1", "-url", address), "on")
        self.assertEqual(self.run_host("-url", address + "?redirect=nowhere"), "CKR_CANCEL")

    def test_pages_are_found_beside_the_library_then_under_the_root(self):
        self.install()
        for name in ("opt/lib/index.html", "ui/index.html", "ui/other.html"):
            self.page(f"exit('OK', '{name[:2]} ' + location.href.split('/').pop())", name)
        root = ("-root", f"{self.dir}/ui/")
        for arguments, result in [
                ((), "op index.html"),
                (("demo://start?a=1&b",), "op index.html?a=1&b"),
                (("demo://start?",), "op index.html?"),
                (("demo://x", "demo://y?a=1"), "op index.html"),
                (root, "op index.html"),
                ((*root, "-url", "other.html"), "ui other.html")]:
            self.assertEqual(self.run_host(*arguments), result)
        self.start("-url", "none.html", "-verbose")  # shows an empty window
        self.window()
        self.assertIn("App - Dialog position ", (self.dir / "trace").read_text())

    def test_nothing_is_saved_for_a_page_and_what_the_engine_keeps_is_private(self):
        page = self.page("for (const name of 'abc') { const link = document.createElement('a');"
                         "link.href = 'data:x/y,z'; link.download = 'saved-' + name; link.click(); }"
                         "setTimeout(exit, 1000, 'OK', 'done')")
        self.assertEqual(self.run_host("-url", page), "done")
        self.assertEqual([*self.dir.glob("saved-*")], [])
        for name in (".cache/tovik", ".local/share/tovik"):
            self.assertEqual((self.dir / name).stat().st_mode & 0o777, 0o700, name)

    def test_host_says_what_it_cannot_do(self):
        def fails(status, text, *arguments):
            self.start(*arguments)
            self.assertIsNone(self.finish(status))
            self.assertIn(text, self.errors)
            self.assertEqual(self.errors.count("\n"), 1)

        self.environment["DISPLAY"] = "none:7"
        fails(3, "cannot open a display", "-url", "index.html")
        del self.environment["DISPLAY"]
        fails(3, "cannot open a display")
        library = self.install() / "libtovikgui.so"
        for place in ("my apps/product", "a/bin/product"):
            self.host = str(shutil.copytree(self.dir / "opt", self.dir / place) / "bin/tovik")
            fails(2, f"{self.host} holds a blank or a further", "-url", self.page("exit()"))
        self.install()
        library.write_text("no library")
        fails(2, str(library))
        library.unlink()
        fails(2, str(library))

    def test_host_finds_its_place_however_it_is_started(self):
        self.page("exit('OK', 'here')", self.install() / "index.html")
        (self.dir / "link").symlink_to(self.host)
        self.environment["PATH"] = f"{self.dir}/opt/bin:{self.environment['PATH']}"
        for name in (self.host, "opt/bin/tovik", "./opt/../link", str(self.dir / "link"), "tovik"):
            self.start(command=["bash", "-c", f'exec {name} "$@"', "bash"])
            self.assertEqual(self.finish(), "here", name)
        for words, text in (("-verbose --help", "Usage: tovik"), ("--version -url", "tovik ")):
            for print_option, status in ((), 0), (("--print",), 2):
                told = subprocess.run([self.host, *print_option, *words.split()], text=True,
                                      capture_output=True)
                printed, other = (told.stdout, told.stderr)[::-1 if print_option else 1]
                self.assertEqual((told.returncode, printed[:len(text)], other), (status, text, ""))

    def test_entry_admin_splits_its_command_line(self):
        lib = self.install()
        host = ("import ctypes, sys; ctypes.CDLL(sys.argv[1]).EntryAdmin(None, None,"
                " (sys.argv[2] + ' a' * int(sys.argv[3])).encode())")
        line = f' -title "a b" -url {self.page("exit()")} -store {self.store}'
        for start, more in (("tovik", "5000000"), ("tovik -verbose", "0")):
            self.start("-store", command=["python3", "-c", host, lib / "libtovikgui.so",
                                          start + line, more])
            self.assertEqual(self.finish(), "undefined")
        self.assertTrue(self.trace.startswith(
            "App - 0: tovik\nApp - 1: -verbose\nApp - 2: -title\nApp - 3: a b\n"), self.trace)

    def test_host_with_a_main_loop_of_its_own_goes_on(self):
        self.start("-url", self.page("setInterval(exit, 20)"),
                   command=["python3", "-c", OWN_LOOP, BUILD / "lib/libtovikgui.so"])
        self.assertEqual((self.finish(), self.trace), ("undefined", "went on\n"))

    def program(self, name, text):
        path = self.dir / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)
        path.chmod(0o700)
        return path

    def test_children_start_as_a_fresh_process_would(self):
        self.install()
        self.program(".install", AGAIN)
        again = self.program("opt/bin/again", AGAIN)
        start = ("import os, signal, sys; signal.pthread_sigmask(signal.SIG_BLOCK, [signal.SIGUSR2]);"
                 f"os.dup2(1, 9); os.execv('{again}', ['{again}', *sys.argv[1:]])")
        self.start("-url", self.page(CHAIN), command=["python3", "-c", start])
        text = self.until(lambda: self.store.exists() and self.store.read_text())
        self.assertEqual(set(text.splitlines()[1:]), {f"SigBlk: {0:016} SigIgn: {0:016} 0 1 2 3 9"})

    def test_scripts_and_redirects_leave_the_shell(self):
        for name, text in ((".install", "hidden"), ("install", "plain"),
                           (".tovik/uninstall", "home"), ("browser", "$1")):
            self.program(name, f'#!/bin/bash\nyes 2>{os.devnull} | head -1 >{os.devnull};'
                         f' echo "{text} $PIPESTATUS" >>"{self.dir}/log"\n')
        install = self.page("location = 'tvk://install'; setTimeout(exit, 300, 'OK', 'installed')")
        # The end of the script is seen though the caller has SIGCHLD ignored.
        self.start("-url", install, command=["env", "--ignore-signal=CHLD", self.host])
        self.assertEqual(self.finish(), "installed")
        self.assertEqual(self.run_host("-url", self.page("location = 'tvk://uninstall?status=OK'")),
                         "CKR_CANCEL")
        # The opener of the desktop, which for a scheme of no program asks for $BROWSER.
        self.environment |= {"BROWSER": str(self.dir / "browser"), "XDG_CURRENT_DESKTOP": "X"}
        reload = self.page("location = 'tvk://reload'")
        query = "x://y?redirect=none%3A%2F%2Flocalhost%2Fa%3Fb&autostarttoken=t"
        self.assertEqual(self.run_host(query, "-url", reload), "CKR_CANCEL")
        self.until(lambda: self.log().count("\n") == 3)
        self.assertEqual(self.log(), "hidden 141\nhome 141\nnone://localhost/a?b 141\n")

    @unittest.skipIf(SANITIZER, "the accessibility bus needs tens of seconds to start")
    def test_dialog_is_read_through_the_accessibility_bus(self):
        del self.environment["DBUS_SESSION_BUS_ADDRESS"]
        tree = subprocess.run(
            ["dbus-run-session", "--", "sh", "-c", f"'{BUILD}/demo/bin/tovik' & host=$!;"
             f"/usr/bin/python3 '{SOURCE}/tests/e2e/tree.py'; kill $host"],
            env=self.environment, text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        for node in ("document web: Confirm PIN", "heading: Confirm your PIN",
                     "password text: PIN", "(push )?button: Confirm", "(push )?button: Cancel"):
            self.assertRegex(tree.stdout, f"(?m)^{node}$")
