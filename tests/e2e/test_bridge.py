"""What pages meet of the plug-in, in the real web process."""
import base64
import json
import shutil
import unittest

from server import serve
from shell import BUILD, PRELUDE, SANITIZER, Shell

# Script expressions and their values; EnumProperty of the test plug-in echoes its arguments.
CALLS = [
    ("String(Tovik)", "[object Tovik]"),
    ("Object.keys(Object.getPrototypeOf(Tovik)).sort().join()",
     "EnumProperty,GetProperty,Invoke,SetProperty"),
    ("delete Tovik.Invoke && typeof Tovik.Invoke", "function"),
    ("Tovik.GetProperty()", ""),
    ("Tovik.GetProperty('absent')", ""),
    ("Tovik.GetProperty('invalid')", ""),
    ("[true, null, undefined, {}, []].map(x => Tovik.GetProperty(x)).join()", ",,,,"),
    ("Tovik.SetProperty()", None),
    ("Tovik.SetProperty('a')", None),
    ("Tovik.SetProperty('a', true)", None),
    ("Tovik.GetProperty('a')", ""),
    ("Tovik.SetProperty('a', 1.5, 'ignored')", None),
    ("Tovik.GetProperty('a')", "1"),
    ("(Tovik.SetProperty(42, 'x'), Tovik.GetProperty(42))", "x"),
    ("Tovik.EnumProperty('a')", ""),
    ("Tovik.EnumProperty('a', {})", ""),
    ("Tovik.EnumProperty('none', '')", ""),
    ("Tovik.EnumProperty('', 12)", "<|12>"),
    ("Tovik.EnumProperty(3.9, -3.9)", "<3|-3>"),
    ("Tovik.EnumProperty(-0.5, 2 ** 31)", "<0|2147483648>"),
    ("Tovik.EnumProperty(NaN, Infinity)", "<|>"),
    ("Tovik.EnumProperty(2 ** 63, -(2 ** 63))", "<|>"),
    ("Tovik.EnumProperty(999999999999999, -9999999999999)", "<999999999999999|-9999999999999>"),
    ("Tovik.EnumProperty(1234567890123456, -99999999999999)", "<234567890123456|>"),
    ("Tovik.EnumProperty('é€\\u{1f600}', 'a\\0b')", "<é€\U0001f600|a>"),
    ("Tovik.EnumProperty('x'.repeat(999), 'x'.repeat(999) + 'é')", f"<{'x' * 999}|{'x' * 999}é>"),
    ("Tovik.EnumProperty('', 'x'.repeat(200) + '\\0y')", f"<|{'x' * 200}>"),
    ("Tovik.EnumProperty('é€\\u{1f600}'.repeat(99), 'é'.repeat(200) + '\\ud800y')",
     "<" + "é€\U0001f600" * 99 + "|" + "é" * 200 + ">"),
    ("Tovik.EnumProperty('echo', 'its own')", "its own"),
    ("Tovik.EnumProperty('echo', 'x'.repeat(1 << 20)).length", 1 << 20),
    ("Tovik.Invoke()", 0),
    ("Tovik.Invoke(true)", 0),
    ("Tovik.Invoke('abc')", 3),
    ("Tovik.Invoke(NaN)", 0),
    ("Tovik.Invoke('all ones')", -1),
    ("Tovik.Invoke('long')", 5),
    ("(Tovik.SetProperty('big', 'é'.repeat(1 << 20)), Tovik.GetProperty('length:big'))", "2097152"),
    ("Tovik.GetProperty('huge').length", 50000000),
    ("Tovik.GetProperty('endless')", ""),
]
EVALUATE = "exit('OK', JSON.stringify(%s.map(eval)))" % json.dumps([call for call, _ in CALLS])
MANY_FRAMES = """onload = () => { const own = new Set(); let n = 0;
for (; n < 1000; ++n) { document.body.append(document.createElement('iframe')); }
for (const f of document.querySelectorAll('iframe')) {
    own.add(f.contentWindow.Tovik); n -= f.contentWindow.Tovik.Invoke('abc') === 3; }
exit('OK', own.size + ' ' + n); }"""
# The engine collects garbage only when there is enough of it: the calls go on until a million of
# them use no more memory, which never happens when each call leaks.
MEMORY = """const grown = {};
for (const [name, ...values] of [['GetProperty', 'quiet'], ['SetProperty', 'quiet', 'b'],
        ['EnumProperty', 'a', 'b'], ['Invoke', 'quiet']]) {
    for (let rounds = 0, more = 17; rounds < 8 && more > 16; ++rounds) {
        const before = Tovik.GetProperty('resident');
        for (let i = 0; i < 1e6; ++i) { Tovik[name](...values); }
        grown[name] = more = (Tovik.GetProperty('resident') - before) / 1048576;
    }
}
exit('OK', Object.values(grown).every(x => x <= 16))"""
# A host of its own, which prints what the plug-in has written down when Main has returned.
HOST = ("import ctypes, os, sys; lib = ctypes.CDLL(sys.argv[1]);"
        "a = [x.encode() for x in sys.argv[1:]]; argv = (ctypes.c_char_p * (len(a) + 1))(*a);"
        "lib.Main(len(a), argv); print(open(os.environ['TEST_PLUGIN_LOG']).read());")
POLL = "setInterval(() => { if (Tovik.Invoke('abc') === 3) { exit('OK', 'found'); } }, 20)"


class Bridge(Shell):
    def test_functions_convert_every_kind_of_argument(self):
        for plugin in ("newer", "older"):
            self.install(plugin)
            values = json.loads(self.run_host("-url", self.page(EVALUATE)))
            for (call, expected), value in zip(CALLS, values, strict=True):
                self.assertEqual(value, expected, (plugin, call))
            self.assertIn("tovik: the plug-in answers with 2147483648 bytes", self.errors)
        self.assertIn("invoke \n", self.log())

    def test_every_frame_has_an_object_of_its_own(self):
        self.install("both")
        self.assertEqual(self.run_host("-url", self.page(MANY_FRAMES)), "1000 0")
        self.assertIn("newer initialize", self.log())

    @unittest.skipIf(SANITIZER, "freed memory is kept for a while")
    def test_calls_leave_no_memory_behind(self):
        self.install("newer")
        self.assertEqual(self.run_host("-url", self.page(MEMORY)), "true")

    def test_absent_and_failing_plugins_leave_the_page_alive(self):
        script = "exit('OK', typeof Tovik + (window.Tovik ? Tovik.Invoke('abc') : ''))"
        for plugin, result in ((None, "undefined"), ("failing", "object0"), ("five", "object0")):
            self.install(plugin)
            self.assertEqual(self.run_host("-url", self.page(script)), result, plugin)
        # Beside this library, the path of the plug-in would be too long.
        root = shutil.copytree(self.install("newer", name="libab.so"), f"{self.dir}/{'x' * 250}"[:251])
        shutil.move(f"{root}/libtovikgui.so", f"{root}/ab_.so")
        self.assertEqual(self.run_host("-url", self.page(script), "-root", root), "object0")

    def test_plugin_may_appear_later(self):
        root, late = self.install(), self.dir / "late"
        late.mkdir()
        self.environment["LD_LIBRARY_PATH"] = str(late)
        self.start("-url", self.page(POLL), "-root", f"{root}/")
        self.window()
        shutil.copy(BUILD / "tests/plugins/older/libtovik.so", self.dir / "new")
        (self.dir / "new").rename(late / "libtovik.so")
        self.assertEqual(self.finish(), "found")

    def test_shell_takes_user_agent_page_and_options_from_the_plugin(self):
        page = base64.b64encode((PRELUDE + "var STARTUP_ARG = \"\";"
                                 "exit('OK', STARTUP_ARG + ' ' + Tovik.Invoke('abc'))</script>")
                                .encode()).decode()
        address = serve(self, PRELUDE + "fetch('/count').then(r => r.text())"
                        ".then(text => exit('OK', text))</script>")
        self.environment |= {
            "TEST_ProductInfo": "Product;abc;0612,x", "TEST_MachineInfo": "Ubuntu 22.04;x",
            "TEST_Web_page": page,
            "TEST_ConfigGlobal_Command_App": f"-url {address} -verbose -store /none"}
        for plugin in ("newer", "older"):
            self.install(plugin)
            self.assertRegex(self.run_host(), r"^\d Product/6.12 Ubuntu/22.04 Mozilla/5.0 ")
            self.assertEqual(self.trace, "", "the defaults turn no tracing on")
            self.assertEqual(self.run_host("x://?a=1&b", "-url", "res://page"), "a=1&b 3")
        # What WebKit refuses is left out: the system's part, then the product's, without a message.
        for variable, value, arguments, agent in (
                ("MachineInfo", "Debian GNU/Linux 12.5;x", (), "Product/6.12 Mozilla"),
                ("UserAgentId", "Prödukt", (), "Mozilla"),
                ("UserAgentId", "ours", ("-useragent", "a\nb"), "Mozilla")):
            self.environment["TEST_" + variable] = value
            self.assertRegex(self.run_host("-verbose", *arguments), rf"^\d {agent}/5.0 ")
            self.assertEqual("App - UserAgent: Product/6.12 Mozilla" in self.trace,
                             "UserAgent:" in self.trace, self.trace)
        # Both processes load the plug-in, and the user-interface process closes it.
        log = self.log()
        self.assertIn("older initialize null null null null\n", log)
        self.assertGreaterEqual(log.count("finalize"), 4)

    def test_another_brand_finds_its_own_files(self):
        lib = self.install("older", "libab_gui.so", "libab.so")
        (lib / "ab.conf").touch()
        # After the run, in which the plug-in has gone, nobody reads the arguments.
        host = HOST + (
            "ctypes.memset(argv, 1, 8); lib.webkit_web_context_get_default.restype = ctypes.c_void_p;"
            "lib.g_signal_emit_by_name(ctypes.c_void_p(lib.webkit_web_context_get_default()),"
            " b'initialize-web-extensions')")
        self.start("-root", f"{lib}/", "-url", self.page("exit('OK', Tovik.Invoke('abc'))"),
                   "-config", "own.conf", command=["python3", "-c", host, lib / "libab_gui.so"])
        self.assertEqual(self.finish(), "3")
        self.assertIn("finalize\n", self.trace)
        log = self.log()
        self.assertIn(f"older initialize null {lib}/ab.conf own.conf null\n", log)
        self.assertIn(f"older initialize null {lib}/ab.conf null null\n", log)

    def test_main_gives_the_plugin_back_without_a_display(self):
        lib = self.install("older")
        self.environment["DISPLAY"] = "none:7"
        self.start("-root", lib, command=["python3", "-c", HOST, lib / "libtovikgui.so"])
        self.finish()
        self.assertEqual(self.trace, "older initialize null null null null\nfinalize\n\n")


class Crash(Shell):
    window_manager = True

    def test_window_outlives_a_plugin_that_crashes(self):
        self.install("newer")
        for command in ("abort", "throw", "hang"):
            self.start("-url", self.page(f"Tovik.Invoke('{command}')"))
            self.until(lambda: f"invoke {command}" in self.log())
            self.close_window()
            self.assertEqual(self.finish(), "CKR_CANCEL")
