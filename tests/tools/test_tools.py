"""The tools beside the host: each fault is found, by its name, and what is sound passes."""
import json
import os
import pty
import re
import shutil
import subprocess

from shell import BUILD, SOURCE, Shell

PLUGINS = BUILD / "tests/plugins"
DEMO = BUILD / "examples/demo-plugin"
SOUND = {"ProductInfo": "Product;abc;0612,x", "MachineInfo": "Ubuntu 22.04;x", "Web_page": "PHA+",
         "ConfigGlobal_Command_App": '-url res://page -title "De mo"'}
# A plug-in, its environment behind "TEST_", the exit status, and what stands in the findings.
CHECKS = [
    (DEMO, {}, 0, "OK    newer set: complete", "user agent: TovikDemo/1.0 "),
    (DEMO / "older", {}, 0, "OK    older set: complete", "WorkingDirectory: none"),
    ("newer", SOUND, 0, 'default options: "-url", "res://page", "-title", "De mo"\n',
     "user agent: Product/6.12 Ubuntu/22.04 before", f"WorkingDirectory: {PLUGINS}/newer/\n"),
    ("both", {}, 0, "NOTE  older set: complete, but never used"),
    ("five", {}, 1, "WRONG entry points: neither set is complete (newer: PlgInvoke missing"),
    ("fallback", {}, 1, "WRONG newer set: incomplete: PlgInvoke missing"),
    ("failing", {}, 1, "WRONG initialise: the first time: PlgInitialize() fails, twice"),
    ("failing-older", {}, 1, "WRONG initialise: the first time: P_Initialize() fails, twice"),
    ("linked", {}, 1, "WRONG linked: is linked to Tovik's library", "WRONG entry"),
    ("newer", {"NULL_COMMAND": "abort"}, 1, "WRONG crash: signal 6 (Aborted) in PlgInvoke(null)"),
    ("older", {"NULL_COMMAND": "throw"}, 1, "WRONG crash: signal 6 (Aborted) in P_Invoke(null)"),
    ("newer", {"NULL_COMMAND": "exit"}, 1, "crash: ended the process with status 0 in PlgInvoke"),
    ("newer", {"NULL_COMMAND": "hang"}, 1, "WRONG hang: did not return within 3 s"),
    ("newer", {"NULL_COMMAND": "kill"}, 1, "WRONG crash: signal 15 (Terminated) in PlgInvoke(null)"),
    ("newer", {"NULL_COMMAND": "close"}, 1, "WRONG streams: closes the standard"),
    ("newer", {"NEEDS_STATICS": "1"}, 0, "OK    load: three times"),
    ("newer", {"ECHO": "1"}, 0, 'NOTE  lifetime: PlgEnumProperty(null, "x") answers with'),
    ("failing", {"STORES": "1"}, 1, "WRONG initialise: PlgInitialize() fails and stores"),
    ("newer", {"UserAgentId": "x" * 32}, 1, "WRONG UserAgentId: is left out"),
    ("newer", {"UserAgentId": "a\nb\u009b\u202e"}, 1, "Id: a\\x0Ab\\xC2\\x9B\\xE2\\x80\\xAE\n",
     'WRONG user agent: the product\'s part is left out: "a\\x0Ab', 'at "\\x0Ab', "WebKit's own\n"),
    ("newer", SOUND | {"MachineInfo": "GNU/Linux 12.5;x"}, 1, "OK    user agent: Product/6.12 before",
     "the system's part is left out: \"Product/6.12 GNU/Linux/12.5\" is refused by WebKit at \"/12.5"),
    ("newer", {"ProductInfo": "1.0"}, 1, "WRONG ProductInfo: is left out", "agent: WebKit's"),
    ("newer", {"MachineInfo": "Debian 12;x"}, 1, "WRONG MachineInfo: is left out"),
    ("newer", {"ProductInfo": b"\xed\xa0\x80;"}, 1, "WRONG ProductInfo: is not UTF-8", "\\xED\\xA0"),
    ("newer", {"ConfigGlobal_Command_App": "-url res://no -root /"}, 1,
     "WRONG start page: no property Web:no", "WRONG default options: -root has no effect here"),
]
WRONG_MACHINE = b"\x7fELF\x02\x01\x01" + bytes(9) + b"\x03\x00\xb7\x00" + bytes(44)
LINKS = """<!doctype html><link href=/assets/a.css><a href='a b.js?x&amp;y#z'>x</a><base href="">
<!-- <img src=c.png> --><script src="tovik-mock.js"></script><script SRC = "//cdn/x.js"></script>
<template><img src="{{x}}"></template><img src="data:image/png;base64,x#y"><a href=tvk://exit>
<script type=module>import{a}from"./m.js"; import './%61%20b.js'; import "bare"; x = "</s"
// import "./old.js"
</script><textarea><img src=t></textarea><img src="../up.png?1"><a href=#x><a href="mailto:a@b">
<script>import "./classic.js"</script><a href='http://h/x'><img src="n&amp;1.png"><img src='cut.png"""
NO_LEAKS = {"LSAN_OPTIONS": "detect_leaks=0"}  # those of the engine are no fault of a plug-in


class Tools(Shell):
    def ask_tool(self, tool, *arguments, **environment):
        done = subprocess.run([tool, *arguments], env=self.environment | NO_LEAKS | environment,
                              cwd=self.dir, capture_output=True, text=True, timeout=100)
        return done.returncode, done.stdout, done.stderr

    def finds(self, status, texts, done):
        missing = [text for text in texts if text not in done[1]]
        self.assertEqual((done[0], missing), (status, []), done)

    def check(self, *arguments, **environment):
        return self.ask_tool(BUILD / "bin/tovik-plugin-check", *arguments, **environment)

    def test_plugin_check_names_each_fault(self):
        for plugin, environment, status, *texts in CHECKS:
            environment = {"TEST_" + name: value for name, value in environment.items()}
            self.finds(status, texts, self.check(PLUGINS / plugin / "libtovik.so", "--limit", "3",
                                                 **environment))

    def test_plugin_check_says_what_it_cannot_load_and_speaks_json(self):
        sound = (PLUGINS / "newer/libtovik.so").read_bytes()
        for content, text in ((b"text", "no ELF"), (sound[:40], "cut off"), (sound[:9000], "cut"),
                              (WRONG_MACHINE, "another architecture"), (None, "a directory")):
            path = self.dir / "libx.so"
            path.write_bytes(content) if content else (path.unlink(), path.mkdir())
            status, lines, _ = self.check(path)
            self.assertEqual((status, lines.count("\n")), (1, 1), lines)
            self.assertIn(text, lines)
            answer = json.loads(self.check(path, "--json")[1])
            self.assertEqual((answer["wrong"], answer["findings"][0]["level"]), (True, "WRONG"))
        for arguments in ((), (self.dir / "none",), ("--wrong",), (path, "--limit", "0"),
                          (path, "--limit", "5abc")):
            status, lines, errors = self.check(*arguments)
            self.assertEqual((status, lines, errors.count("\n")), (2, "", 1), errors)
        lonely = shutil.copy(BUILD / "bin/tovik-plugin-check", self.dir)
        self.assertIn("library is missing", self.ask_tool(lonely, PLUGINS / "newer/libtovik.so")[2])

    def test_plugin_check_says_on_a_terminal_what_it_waits_for(self):
        terminal, errors = pty.openpty()
        self.spawn([BUILD / "bin/tovik-plugin-check", PLUGINS / "newer/libtovik.so"], stderr=errors,
                   stdout=subprocess.DEVNULL, env=self.environment | {"TEST_NULL_COMMAND": "hang"})
        os.close(errors)
        shown = b""
        while b" s of 20 s: PlgInvoke(null)" not in shown:
            shown += os.read(terminal, 1000)
        os.close(terminal)

    def test_doctor_tells_what_the_host_would_do(self):
        lib = self.install("newer")
        self.page("exit('OK', 'here')", lib / "index.html")
        doctor = shutil.copy(BUILD / "bin/tovik-doctor", self.dir / "opt/bin")
        page, store = self.page("", "a #.html"), ("-store", self.store)
        self.page("", "ui/p.html")
        ui, two = f"{self.dir}/ui/", self.dir / "two/lib/libtovikgui.so"

        for place in ("many", "a b/lib", "a#b/lib", "old/lib", "ab/lib", "two/lib", "bin/lib",
                      "\udcff"):
            shutil.copytree(lib, self.dir / place)
        many, spaced = self.dir / "many", self.dir / "a b/lib/libtovikgui.so"
        old = (self.dir / "old/lib/libtovikgui.so").rename(self.dir / "old/lib/libtovikgui.so.1")
        brand = (self.dir / "ab/lib/libtovikgui.so").rename(self.dir / "ab/lib/libab_gui.so")
        shutil.copy(two, two.with_name("libabgui.so"))
        for i in range(10):
            (many / f"lib{i}.so").touch()
        for arguments, status, *texts in [
                (store, 0, f": {lib}/libtovik.so; looked at {self.dir}/opt/bin/libtovik.so "
                 f"(not there), {lib}/libtovik.so (there)", f"page: file://{lib}/index.html; looked",
                 f"module: WebKit opens {lib}/libtovikgui.so", "area: 1280 x 1024", "brand: tovik"),
                (("-url", page, *store, "-size", "0x00320032"), 0, f"page: {page}", "640 x 512 at"),
                (("-size", "320x512", "--parent", "1c", "-wait"), 1, 'not "320x512"',
                 '--parent "1c" is no handle; give', '-wait needs a number, such as'),
                (("-url", page, "a://b?c", "-plugin", "x" * 260), 1, "NOTE  options: the query of "
                 "a://b?c is not passed on", "-plugin has more than 259"),
                (("-url", "none.html"), 1, "WRONG start page: no none.html", "NOTE  answer"),
                (("-url", "res://page", "-config", "c"), 1, "WRONG start page", "WRONG local conf"),
                (("-useragent", "a/1 (b"), 1, 'WRONG user agent: -useragent has no effect: "a/1 (b" '
                 "is refused by WebKit at its end"),
                (("-icon", "x" * 5000), 1, "WRONG icon: there is no xxx"),
                (("-store", "/none/x", "-rot"), 1, "WRONG answer: /none/x", "NOTE  options: -rot"),
                (("-root", many), 1, f"WRONG other libraries: 10 other libraries in {many}", "WRONG"
                 " root", f"WebKit opens {many}/libtovikgui.so", f"pages: {many}/libtovik.so"),
                (("-root", f"{self.dir}/"), 1, "WRONG module: the library is not in"),
                (("-root", "ui/", "a?b://c", "d://e?f", "-url", "p.html"), 1,
                 f"WRONG root: ui/ is a relative path, so pages found there are not shown; use {ui}\n",
                 "WRONG start page: file://ui/p.html is a path", "the query of d://e?f is not passed"),
                (("-root", self.dir / "\udcff"), 1, "/\\xFF is not UTF-8, so pages have no Tovik"),
                (("-url", "-icon"), 1, f"page: {lib}/ is a directory, whose files are listed; -url has",
                 "WRONG icon: none, as -icon has no value"),
                (("--print", "-store"), 1, "WRONG answer: -store has no value", 'options: "-store"\n'),
                (("--print", "-store", "/dev/null"), 1, "WRONG answer: /dev/null is no regular file"),
                (("-title", "Pay https://b/?a=1 now"), 1,
                 'WRONG options: the page is given the query "a=1 now", from the value of -title'),
                (("-url", page, *store, "-verbose"), 0, "NOTE  options: -verbose prints the answer"),
                (("-url", page, "--version"), 1, "WRONG options: --version shows a text"),
                (("--library", two), 1,
                 f"WRONG other libraries: {two.with_name('libabgui.so')} is the library of another"),
                (("--library", self.dir / "bin/lib/libtovikgui.so"), 1,
                 f"WRONG program: {self.dir}/bin/bin/tovik has a directory bin further up"),
                (("-plugin", PLUGINS / "five/libtovik.so"), 1, "WRONG plug-in of the window: has"),
                (("--library", spaced), 1, "WRONG program: the layout reads"),
                (("--library", self.dir / "a#b/lib/libtovikgui.so"), 1, "WRONG start page: the path"),
                (("--library", old.with_suffix("")), 1, "WRONG library: only under a versioned"),
                (("--library", old), 1, "so.1 does not end in \".so\""),
                (("--library", brand), 1, "OK    brand: ab\n", "WRONG extension directory: none",
                 f"{self.dir}/ab/lib/libab.so (not there)")]:
            self.finds(status, texts, self.ask_tool(doctor, *arguments))
        self.assertEqual(self.ask_tool(doctor, "--library")[0], 2)
        sick = self.ask_tool(doctor, DISPLAY="none:7", WEBKIT_FORCE_SANDBOX="1")[1]
        self.assertRegex(sick, "WRONG display(.|\\n)*WRONG sandbox")

    def test_doctor_names_the_local_files_that_a_page_lacks(self):
        page = self.install("newer") / "index.html"
        for name in ("tovik-mock.js", "a b.js"):
            (page.parent / name).touch()
        for text, missing, advice in (
                (LINKS, ["/assets/a.css", "//cdn/x.js", "./m.js", "../up.png?1", "n&1.png", "cut.png"],
                 "no /assets/a.css; build the page with relative paths"),
                ("<base href='/app/'><script src=m.js>", ["m.js"], 'no /app/m.js; remove <base href')):
            page.write_text(text)
            status, lines, _ = self.ask_tool(BUILD / "bin/tovik-doctor", "--library",
                                             page.with_name("libtovikgui.so"), "-store", self.store)
            self.assertEqual(re.findall('WRONG start page: names "(.*?)"', lines), missing)
            self.finds(1, [advice, f"WRONG mock: {page.parent}/tovik-mock.js"], (status, lines))
        self.assertEqual(lines.count("NOTE  start page: loads tovik-mock.js"), 0)

    def test_guide_and_manual_page_have_the_options_of_the_help(self):
        options = re.findall(r"^  -([\w-]+)\S* ([A-Z]*)(.*(?:\n {19}.*)*)",
                             self.ask_tool(BUILD / "bin/tovik", "--help")[1], re.M)
        for file, entry in (("docs/integration.md", r"^\| `-([\w-]+)\S*` \| (.*?) ?\| (.*)"),
                            ("docs/man/tovik.1", r"^\.It Fl (\S+)( Ar)?(.*(?:\n(?!\.It).*)*)")):
            described = re.findall(entry, (SOURCE / file).read_text(), re.M)
            self.assertEqual(*(sorted((name, bool(value)) for name, value, _ in rows)
                               for rows in (options, described)), file)
            texts = {name: text for name, _, text in described}
            for name, _, text in options:
                for default in re.findall(r"\(default (.*)\)", text):
                    self.assertIn(default, texts[name], file)

    def test_template_builds_elsewhere_and_passes_the_check(self):
        shutil.copytree(SOURCE / "sdk", self.dir / "sdk")
        shutil.copytree(SOURCE / "sdk/templates/plugin", self.dir / "mine")
        check = BUILD / "bin/tovik-plugin-check"
        for older, bound in (("OFF", "newer"), ("ON", "older")):
            for command in (f"cmake -G Ninja -B out -DTOVIK_SDK={self.dir}/sdk -DOLDER_SET={older}"
                            f" -DTOVIK_PLUGIN_CHECK={check}",
                            "cmake --build out", "ctest --test-dir out -V --no-tests=error"):
                done = subprocess.run(command.split(), cwd=self.dir / "mine", capture_output=True,
                                      text=True, env=self.desktop() | NO_LEAKS)
                self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
            self.assertIn(f"{bound} set: complete", done.stdout)
            self.assertNotIn("NOTE", done.stdout)
