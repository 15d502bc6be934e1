"""What the author of a plug-in sees of its calls: without a page, and in both processes of a run."""
import re
import shutil
import subprocess
import unittest

from shell import BUILD, SANITIZER, Shell

PLUGINS = BUILD / "tests/plugins"
# Steps, the exit status, and what stands in the lines.
CALLS = [
    (["set", "a=b=c", "get", "a", "enum", "Keys", "", "get", "UserAgentId", "invoke", "-x"], 0,
     '("a", "b=c") (', '("a") = "b=c" (', '("Keys", "") = "<Keys|>" (', '("UserAgentId") = null (',
     '("-x") = 2 0x2 CKR_HOST_MEMORY ('),
    (["get", "absent"], 1, 'GetProperty("absent") = null', "WRONG null: no property of this name"),
    (["enum", "none", ""], 1, 'EnumProperty("none", "") = null', "WRONG null: no answer to these"),
    (["invoke", "x" * 84], 1, "= 84 0x54 CKR_FUNCTION_NOT_SUPPORTED", "WRONG unknown command"),
    (["invoke", "long"], 1, "= 5 0x700000005", "WRONG more than 32 bits"),
    (["invoke", "all ones"], 0, "= -1 0xFFFFFFFF (the plug-in's own)"),
    (["get", "invalid"], 1, r'= "a\xFF\xFE"', 'WRONG not UTF-8: a page receives ""'),
    (["get", "endless"], 1, "(2147483648 bytes)", "WRONG too long"),
    (["enum", "echo", "caller's", "get", "UserAgentId"], 1,
     'EnumProperty("echo", "caller\'s") WRONG dangling: the text has changed before the next call'),
    (["invoke", "slow"], 0, "NOTE slow: over 100 ms"),
    (["set", "A Pin=4711", "get", "A Pin", "enum", "PASSWORDS", "4711", "invoke", "x?secret=4711"], 0,
     '("A Pin", (hidden))', '("A Pin") = (hidden)', '("PASSWORDS", (hidden)) = (hidden)',
     '("x?secret=(hidden)")'),
    (["get", "a", "invoke", "abort"], 1, 'GetProperty("a")', 'WRONG signal 6 (Aborted) in Invoke("ab'),
    (["invoke", "hang"], 1, 'WRONG did not return within 1 s in Invoke("hang")'),
]
TRACED = [
    r'user-interface process \d+: GetProperty\("UserAgentId"\) = null \(',
    r'web process \d+: Initialize\(null, (null|".*/tovik.conf"), null\) \(',
    r'web process \d+: SetProperty\("Pin", \(hidden\)\) \(',
    r'web process \d+: SetProperty\("Token", \(hidden\)\) \(',
    r'GetProperty\("absent"\) = null .* WRONG null',
    r'GetProperty\("invalid"\) = .* WRONG not UTF-8',
    r'Invoke\("x{84}"\) = 84 .* WRONG unknown command',
    r'Invoke\("slow"\) = 4 .* NOTE slow: over 100 ms',
    r'EnumProperty\("e", "2"\) = "<e\|2>" \(\d+\.\d\d ms\)$',
    r"user-interface process \d+: Finalize\(\) \(",
]
PAGE = """Tovik.SetProperty('Pin', '4711'); Tovik.SetProperty('Token', '4711');
Tovik.GetProperty('absent'); Tovik.GetProperty('invalid'); Tovik.Invoke('x'.repeat(84));
exit('OK', Tovik.Invoke('slow') + Tovik.EnumProperty('e', 2))"""


class PluginTools(Shell):
    def tool(self, name, *arguments, steps=None):
        return subprocess.run([BUILD / "bin" / name, *arguments], env=self.environment, cwd=self.dir,
                              input=steps, capture_output=True, text=True, timeout=100)

    def make_trace(self, plugin, *output):
        return self.tool("tovik-plugin-trace", PLUGINS / plugin / "libtovik.so", *output)

    def test_call_names_each_fault_of_both_generations(self):
        for plugin in ("newer", "older"):
            for steps, status, *texts in CALLS:
                limit = ("--limit", "1") if "hang" in steps else ()
                done = self.tool("tovik-plugin-call", *limit, PLUGINS / plugin / "libtovik.so", *steps)
                missing = [text for text in texts if text not in done.stdout]
                self.assertEqual((done.returncode, missing), (status, []), done)
                self.assertNotIn("4711", done.stdout + done.stderr)
        failing = self.tool("tovik-plugin-call", PLUGINS / "failing/libtovik.so", "get", "a")
        self.assertEqual((failing.returncode, failing.stdout.count("\n")), (1, 1), failing)

    def test_call_reads_steps_and_refuses_what_is_none(self):
        plugin, steps = PLUGINS / "newer/libtovik.so", "# both\n\nset 'a b'=\"c  d\"\n get 'a b' \n"
        done = self.tool("tovik-plugin-call", plugin, "-", steps=steps)
        self.assertIn('GetProperty("a b") = "c  d" (', done.stdout)
        for arguments, text in (((plugin,), "usage"), (("--limit", "0", plugin, "get", "a"), "usage"),
                                ((plugin, "ge", "a"), '"ge" is no step'), ((plugin, "enum", "a"), "two"),
                                ((plugin, "set", "a"), "NAME=VALUE"), (("none", "get", "a"), "no file"),
                                ((plugin, "-"), "line 2: a quote"), ((__file__, "get", "a"), "no ELF"),
                                ((PLUGINS / "five/libtovik.so", "get", "a"), "P_Invoke")):
            done = self.tool("tovik-plugin-call", *arguments, steps="get a\nget 'a")
            self.assertEqual((done.returncode, done.stdout, done.stderr.count("\n")), (2, "", 1), done)
            self.assertIn(text, done.stderr)

    @unittest.skipIf(SANITIZER, "it ends the process there")
    def test_call_finds_a_text_that_is_freed(self):
        done = self.tool("tovik-plugin-call", PLUGINS / "newer/libtovik.so", "get", "freed")
        self.assertRegex(done.stdout, r'GetProperty\("freed"\) = .*WRONG dangling: the text is in mem')

    def test_trace_shows_the_calls_of_both_processes(self):
        self.environment["TOVIK_SECRET_NAMES"] = "+token"
        for plugin in ("newer", "older"):
            lib = self.install()
            (lib / "tovik.conf").touch()
            traced = self.make_trace(plugin, "-o", lib / "libtovik.so")
            self.assertEqual((traced.returncode, traced.stderr), (0, ""))
            self.assertEqual(self.run_host("-url", self.page(PAGE)), "4<e|2>")
            for line in TRACED:
                self.assertRegex(self.errors, f"(?m)^tovik-plugin-trace: .*{line}")
            self.assertNotIn("4711", self.errors)
        self.assertIn(f"older initialize null {lib}/tovik.conf null null\n", self.log())
        self.assertIn(f"set WorkingDirectory {lib}/\n", self.log())

    def test_trace_names_the_call_that_is_wrong_while_the_page_is_open(self):
        lib = self.install()
        self.make_trace("newer", "-o", lib / "libtovik.so")
        for call, fault in (("Invoke('abort')", "crash"), ("Invoke('throw')", "crash"), ("Invoke('hang')", "hang"),
                            ("GetProperty('absent')", "null"), ("GetProperty('invalid')", "not UTF-8")):
            self.start("-url", self.page(f"Tovik.{call}"))
            expected = re.escape(call.replace("'", '"')) + f" .*WRONG {fault}: "
            self.until(lambda: re.search(expected, (self.dir / "errors").read_text()))
            self.assertIsNone(self.process.poll())
            self.end()

    def test_trace_keeps_files_that_are_not_its_own(self):
        mine = shutil.copy(PLUGINS / "older/libtovik.so", self.dir)
        self.assertEqual(self.make_trace("newer", "-o", "traced.so").returncode, 0)
        for arguments, text in ((("newer", "-o", mine), "is there already"), (("newer",), "usage"),
                                (("five", "-o", "x"), "is no plug-in"), (("none", "-o", "x"), "no file")):
            done = self.make_trace(*arguments)
            self.assertEqual((done.returncode, done.stderr.count("\n")), (2, 1), done)
            self.assertIn(text, done.stderr)
        again = self.tool("tovik-plugin-trace", "traced.so", "-o", "x")
        self.assertEqual((again.returncode, (self.dir / "x").exists()), (2, False), again)
        (self.dir / "gone.so").write_bytes((BUILD / "trace/newer.so").read_bytes())
        done = self.tool("tovik-plugin-call", "gone.so", "get", "a")
        self.assertIn("WRONG file: names no plug-in", done.stderr)
