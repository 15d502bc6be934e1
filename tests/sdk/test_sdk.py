"""What the SDK promises, on the real engine and in an ordinary browser."""
import json
import os
import re
import shutil
import signal
import subprocess
import sys
import unittest
import unittest.mock

import guide
from browsed import Browsed
from server import serve
from shell import BUILD, PATIENCE, SANITIZER, SOURCE
from test_print import RESTART

sys.path.insert(0, str(SOURCE / "sdk/python"))
import tovik  # noqa: E402

ASKED = [("exit('OK', 'a é')", "answer: a é", {}), ("exit('ERR')", "answer: ERR", {}),
         ("exit('')", "cancelled", {}), ("exit('OK')", "no answer", {"DISPLAY": "none"}),
         ("exit('OK')", "no answer", {"PATH": "/none"})]

# A document as high as its window, until fit() has been called with a width.
FITTED = """</script><script src="tovik-actions.js"></script>
<style>body { margin: 0; min-height: 100vh } p { margin: 0; max-width: 300px }</style><p></p><script>
const p = document.querySelector('p'), size = '%s';
p.textContent = 'a line that is longer than its box may be '.repeat(9);
p.style.height = '%s';
document.body.style = 'color: red;';
TovikActions.fit(%s);
setInterval(() => size === innerWidth + 'x' + innerHeight && exit('OK', document.body.style.cssText), 20)"""
NODE = shutil.which("node")
# Prints the answer to each of the options of the first argument, or what was thrown.
ASK = """import { dialog } from 'tovik-sdk/dialog';
const abort = new AbortController();
process.on('SIGUSR2', () => abort.abort());
for (const options of JSON.parse(process.argv[2])) {
    await dialog({ ...options, signal: abort.signal }).then(
        text => console.log(text.length < 99 ? text : text.length), error => console.log(error.name));
}
"""

QUERY = """#include <stdio.h>
#include <tovik/dialog.h>
int main(int count, char** words)
{
    const char* pairs[] = {"a b", "\\"é&+", NULL};
    const char* arguments[] = {"tovik", tovik_query(pairs), words[1], words[2], words[3], words[4], NULL};
    char* answer = NULL;
    tovik_dialog(arguments, 0, &answer);
    return count != 5 || fputs(answer ? answer : "none", stdout) < 0;
}
"""


class Sdk(Browsed):
    window_manager = True

    def setUp(self):
        super().setUp()
        self.sdk = shutil.copytree(SOURCE / "sdk", self.dir / "sdk")
        self.environment["PATH"] = f"{BUILD}/bin:{os.environ['PATH']}"

    @unittest.skipIf(SANITIZER, "the tests of the bridge make the same calls")
    def test_mock_and_bridge_conform_on_one_page(self):
        self.conform(self.sdk, "<script src='tovik-mock.js'></script><script src='tovik-actions.js'>"
                     "</script><script>conform(window.TovikMock, TovikActions)</script>")

    @unittest.skipIf(SANITIZER, "no program of ours runs")
    def test_typings_are_neither_narrower_nor_wider_than_the_bridge(self):
        self.assertEqual("checked\n", self.ask("tsc --noEmit --strict --target es2020 "
            f"{self.sdk}/*.d.ts {self.sdk}/node/dialog.d.ts {SOURCE}/tests/sdk/*.ts && echo checked"))

    @unittest.skipIf(SANITIZER, "no program of ours runs")
    def test_page_says_that_there_is_no_bridge(self):
        page = self.sdk / "templates/page"
        shutil.copy(self.sdk / "tovik-actions.js", page)
        self.assertIn('id="notice" role="alert">', self.browse((page / "index.html").as_uri()))
        shutil.copy(self.sdk / "tovik-mock.js", page)
        self.assertIn('role="alert" hidden="">', self.browse((page / "index.html").as_uri()))

    def test_form_answers_without_a_script(self):
        self.start("-url", (SOURCE / "examples/form/index.html").as_uri())
        self.answer_by_keyboard()
        self.assertRegex(self.store.read_text(), r"^\w*a$")

    def test_every_command_of_the_guide_works(self):
        output = guide.follow(self, self.sdk / "README.md", self.sdk)
        self.assertRegex(output, r"^(OK .*\n)+signed by \w+\n(answer: signed by \w+\n){4}$")
        self.page("Tovik.SetProperty('Name', 'Ada'); exit('OK', Tovik.Invoke('sign'))", "sdk/pages/index.html")
        for commands, lines in guide.examples(SOURCE / "docs/debugging.md", "tovik-plugin-"):
            done = subprocess.run(["bash", "-c", commands], cwd=self.sdk, env=self.environment,
                                  capture_output=True, text=True, timeout=PATIENCE)
            printed = guide.steady(done.stdout + done.stderr).splitlines()
            self.assertEqual([line for line in lines if line not in printed], [], printed)

    def test_callers_get_the_answer_as_a_value(self):
        guide.read(self.sdk / "README.md", self.sdk)
        strict = "cc -std=c99 -Wall -Wextra -Wpedantic -Wconversion -Werror -O2 -Iinclude"
        for name in ("ask.py", "ask.mjs", "ask.c"):
            hurried = (self.sdk / name).read_text().replace("30", "2")
            (self.sdk / name.replace("ask", "late")).write_text(hurried)
        for name in ("ask", "late"):
            self.ask(f"cd {self.sdk} && {strict} {name}.c c/tovik_dialog.c -o {name}")
        everything, stubborn = self.environment, self.dir / "stubborn/tovik"
        stubborn.parent.mkdir()
        stubborn.write_text("#!/bin/sh\ntrap '' TERM\nexec sleep 1000\n")
        stubborn.chmod(0o700)
        # A sanitizer watches what the host does, which is the same for all.
        ask, late = ([[f"./{name}"], [sys.executable, f"{name}.py"], [NODE, f"{name}.mjs"]]
                     [:1 if SANITIZER else 3] for name in ("ask", "late"))
        for command in ask:
            for script, output, missing in ASKED:
                self.environment = everything | missing
                printed = self.called(command, self.page(script))
                self.assertTrue(printed.startswith(output), (command, printed))
            self.environment = everything
            address = serve(self, RESTART % "exit('OK', text.split(' ')[0])") + "/page"
            self.assertEqual(self.called(command, address), "answer: 2\n")
            printed = self.called([*command, "-title", "--print"], self.page("exit('OK')"))
            self.assertTrue(printed.startswith("no answer"), printed)
            for number in (signal.SIGTERM, signal.SIGKILL, signal.SIGINT):
                caller = self.spawn([*command, "-url", self.page("")], env=self.environment,
                                    cwd=self.sdk, stderr=subprocess.DEVNULL)
                self.until(lambda: self.ask("xdotool search --onlyvisible --class tovik"))
                caller.send_signal(number)
                self.until(lambda: not self.ask("xdotool search --class tovik"))
        for command in late:
            for folder in (BUILD / "bin", stubborn.parent):
                self.environment = everything | {"PATH": f"{folder}:{os.environ['PATH']}"}
                self.assertIn("no answer in ", self.called(command, self.page("")))
            self.environment = everything
            self.until(lambda: not self.ask("xdotool search --class tovik"))

    def called(self, command, address):
        process = self.spawn([*command, "-url", address], env=self.environment, cwd=self.sdk,
                             text=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        output = process.communicate()[0]
        self.assertEqual([*self.runtime.glob("tovik-*")], [], "left behind")
        return output

    def test_callers_hand_over_what_they_are_given(self):
        title, page = ["-title", "Sign https://shop/?amount=1"], self.page("exit('OK', location.search)")
        words = [*title, "-url", page]
        query = "?a%20b=%22%C3%A9%26%2B"
        (self.sdk / "query.c").write_text(QUERY)
        self.ask(f"cd {self.sdk} && cc -Iinclude query.c c/tovik_dialog.c -o query")
        self.assertEqual(self.called(["./query", *title], page), query)
        with unittest.mock.patch.dict(os.environ, self.environment):
            self.assertEqual(tovik.dialog(*words, query={"a b": '"é&+'}), query)
            self.assertEqual(tovik.dialog(*words, query={}), "OK")
            for wrong in (["a\0b"], ["\ud800"], ["-title", "-store"], ["-wait", "--help"],
                          ["-title", "--inspect=1"]):
                self.assertRaises(tovik.Refused, tovik.dialog, *words, *wrong)
            self.assertRaises(tovik.Refused, tovik.dialog, *words, query={"a": "\ud800"})
        named = {"title": title[1], "url": page, "position": [1, 2], "parent": 1, "resizing": True, "wait": None}
        rows = [
            (named | {"query": {"a b": '"é&+'}}, query), (named | {"query": []}, "OK"),
            *((named | wrong, "Refused") for wrong in (
                {"title": "a\0b"}, {"title": "\ud800"}, {"program": "\0"}, {"title": "--print"},
                {"icon": "--inspect=1"}, {"query": {"a": "\ud800"}}, {"none": 1},
                {"size": [65536, 1]}, {"size": [1]}, {"timeout": -1})),
            ({"program": "/none"}, "NoAnswer"), ({"program": "/"}, "NoAnswer"),
            ({"program": self.program("exit 4")}, "Crashed"),
            ({"program": self.program("kill -9 $$")}, "NoAnswer"),
            ({"program": self.program("head -c 20000000 /dev/zero | tr '\\0' x")}, "20000000"),
            ({"program": self.program("sleep 1000 & exit"), "timeout": 500}, "TimedOut")]
        printed = self.node([options for options, _ in rows]).communicate()[0].splitlines()
        self.assertEqual(printed, [answer for _, answer in rows])
        caller = self.node([named | {"query": None, "timeout": None}])
        self.until(lambda: self.ask("xdotool search --onlyvisible --class tovik"))
        caller.send_signal(signal.SIGUSR2)
        self.assertEqual(caller.communicate()[0], "AbortError\n")
        self.assertEqual(self.ask("xdotool search --class tovik"), "")

    def program(self, script):
        """A stand-in for the host."""
        program = self.dir / f"program{len(script)}"
        program.write_text(f"#!/bin/sh\n{script}\n")
        program.chmod(0o700)
        return str(program)

    def node(self, options):
        (self.sdk / "options.mjs").write_text(ASK)
        return self.spawn([NODE, "options.mjs", json.dumps(options)], env=self.environment, text=True,
                          cwd=self.sdk, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def test_callers_tell_a_crash_from_a_cancel(self):
        crash = self.program("exit 4")
        self.assertRaises(tovik.Crashed, tovik.dialog, program=crash)
        (self.sdk / "told.c").write_text("#include <tovik/dialog.h>\nint main(int c, char** v) { char* a; "
            "return tovik_dialog((const char* const*)v + 1, c > 9, &a) != TOVIK_CRASHED; }")
        self.assertEqual("told\n", self.ask(
            f"cd {self.sdk} && cc -Iinclude told.c c/tovik_dialog.c -o told && ./told {crash} && echo told"))

    def test_callers_know_the_options(self):
        text = self.ask("tovik --help")
        valued = set(re.findall(r"^ +(--?\w+) [A-Z]", text, re.M))
        flags = set(re.findall(r"^ +(--?\w+)(?:  |\[)", text, re.M))
        self.assertEqual((tovik.VALUED, tovik.FLAGS), (valued, flags))
        for source, lists in (("c/tovik_dialog.c", r"k(?:Valued|Flags)\[\]\s*= {(.*?)NULL"),
                              ("node/dialog.js", r"(?:VALUED|FLAGS) = \[(.*?)\]")):
            names = re.findall(lists, (self.sdk / source).read_text(), re.S)
            self.assertEqual([set(re.findall("""["'](-.*?)["']""", name)) for name in names], [valued, flags])
        typed = set(re.findall(r"^    (\w+)\?:", (self.sdk / "node/dialog.d.ts").read_text(), re.M))
        own = {"program", "timeout", "signal", "query", "arguments"}
        self.assertEqual(typed - own, {name.lstrip("-") for name in valued | flags}
                         - {"store", "print", "help", "version"})


class Fit(Browsed):
    """Without a window manager: GTK may lose a resize that crosses the manager's answer to an earlier one."""

    def test_fit_sizes_the_window_to_the_document(self):
        shutil.copy(SOURCE / "sdk/tovik-actions.js", self.dir)
        for case in [("300x200", "200px", ""), ("500x301", "300.5px", 500), ("300x994", "9999px", ""),
                     ("64x64", "0px", 0)]:
            self.assertEqual(self.run_host("-url", self.page(FITTED % case, "fit.html")), "color: red;")
