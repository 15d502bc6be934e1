"""What an installation provides: programs by their links, packages for CMake, other brands."""
import configparser
import gzip
import json
import re
import shutil

from installed import Installed
from shell import BUILD, SOURCE

TITLE = r'PIN "1" \ 50% $HOME'


class Install(Installed):
    def answer_of(self, *command):
        self.start("-url", (self.examples / "form/index.html").as_uri(), command=command)
        self.close_window()
        return self.finish()

    def setUp(self):
        super().setUp()
        self.examples, = self.prefix.rglob("examples")

    def test_programs_run_by_their_links(self):
        self.assertEqual(self.do("find", self.prefix, "-perm", "/022", "!", "-type", "l"), "")
        self.assertEqual(self.answer_of("tovik"), "CKR_CANCEL")
        self.assertEqual(self.answer_of(self.prefix / "bin/tovik"), "CKR_CANCEL")
        self.assertIn(f"library: {self.library}\n", self.do("tovik-doctor", status=1))

    def test_guides_and_what_they_name_are_installed(self):
        guides = [*self.prefix.rglob("*.md")]
        self.assertLess({path.name for path in (SOURCE / "docs").glob("*.md")} | {"SECURITY.md"},
                        {path.name for path in guides})
        for guide in guides:
            for link in re.findall(r'(?:\]\(|src=")(?!https?:)([^)"#]+)', guide.read_text()):
                self.assertTrue((guide.parent / link).exists(), f"{guide}: {link}")
        folder = self.examples.parent / "docs"
        self.assertIn(f"in {folder}\n", self.do("tovik-doctor", "--help"))
        page = gzip.decompress(next(self.prefix.rglob("tovik.1.gz")).read_bytes()).decode()
        self.assertRegex(page, rf"/{folder.relative_to(self.prefix)} :")

    def test_consumers_build_and_run(self):
        self.do("cmake", "-G", "Ninja", "-B", "out", "-S", SOURCE / "tests/packaging/consumer",
                f"-DEXAMPLES={self.examples}")
        self.do("cmake", "--build", "out")
        self.assertEqual(self.answer_of("out/consumer"), "CKR_CANCEL")
        plugin = self.dir / "out/demo-plugin/libtovik.so"
        signing = self.dir / "out/signing-plugin/libtovik.so"
        for library in (plugin, signing, self.dir / "out/libby-hand.so"):
            self.do("tovik-plugin-check", library)
            self.do("tovik-plugin-trace", library, "-o", "traced.so")
            self.do("tovik-plugin-call", "traced.so", "get", "UserAgentId")

        shutil.copytree(self.examples / "demo", self.dir / "pages")
        (self.dir / "pages/logo.ico").rename(self.dir / "icon")
        (self.dir / "config").write_text("text")
        for name in ("dialog.js.map", "tovik-mock.js"):
            (self.dir / "pages" / name).touch()
        ab = self.dir / "ab"
        report = self.do(
            "tovik-product", "ab", "ab", "--plugin", plugin, "--pages", "pages", "--icon", "icon",
            "--config", "config", "--title", TITLE, "--prefix", "/opt/ab", DISPLAY="")
        self.assertRegex(report, "NOTE  pages: left out (dialog.js.map|, |tovik-mock.js){3}\n")
        for line in ("brand: ab", f"library: {ab}/lib/libabgui.so", f"program: {ab}/bin/ab",
                     f"global configuration: {ab}/lib/ab.conf", f"plug-in: {ab}/lib/libab.so",
                     f"icon: {ab}/lib/logo.ico", f"start page: file://{ab}/lib/dialog.html"):
            self.assertIn(f"OK    {line}", report)
        self.assertRegex(self.run_product(ab / "bin/ab"), "^TOKEN-")

        entry = configparser.RawConfigParser(delimiters="=")
        entry.optionxform = str
        entry.read(ab / "share/applications/ab.desktop")
        entry = {key: value.replace("\\\\", "\\") for key, value in entry["Desktop Entry"].items()}
        self.assertEqual((entry["Name"], entry["Icon"]), (TITLE, "/opt/ab/lib/logo.ico"))
        words = self.do("sh", "-c", "printf '%s\\n' " + entry["Exec"].replace("%%", "%"))
        self.assertEqual(words.splitlines(),
                         ["/opt/ab/bin/ab", "-root", "/opt/ab/lib/", "-title", TITLE])

        self.do("tovik-product", "ab", "ab", "--plugin", "none", "--replace", status=2)
        (self.dir / "pages/dangling").symlink_to("none")
        for pages, status in (("pages", 2), (".", 2), (self.examples / "form", 1)):
            self.do("tovik-product", "ab", "ab", "--pages", pages, "--replace", status=status)
            self.assertEqual([*self.dir.glob("ab?*")], [])
            self.assertEqual((ab / "lib/dialog.js").exists(), status == 2)
            self.assertTrue((ab / "lib/index.html").exists() or status == 2)

    def units(self, build):
        """The object files of a build, and the command that makes each."""
        for unit in json.loads((build / "compile_commands.json").read_text()):
            yield re.search(r" -o (\S+)", unit["command"])[1], unit["command"]

    def definitions(self, command):
        """The names that are defined for our code alone."""
        return {*re.findall(r" -D(\w+)", command)} - {"NDEBUG", "_FORTIFY_SOURCE"}

    def test_project_is_built_within_another(self):
        missing = (f"-DCMAKE_DISABLE_FIND_PACKAGE_{name}=ON" for name in ("benchmark", "GTest", "Python3"))
        self.do("cmake", "-G", "Ninja", "-B", "out", "-S", SOURCE / "tests/packaging/consumer", *missing,
                f"-DSOURCE={SOURCE}", f"-DEXAMPLES={SOURCE}/examples", "-DCMAKE_BUILD_TYPE=Release",
                "-DCMAKE_EXPORT_COMPILE_COMMANDS=ON",
                *(f"-DCMAKE_{language}_FLAGS_RELEASE=-O2 -Wp,-D_FORTIFY_SOURCE=2" for language in ("C", "CXX")))
        alone = dict(self.units(BUILD))
        for output, command in self.units(self.dir / "out"):
            # What the one who builds has chosen holds.
            self.assertEqual(re.findall("FORTIFY_SOURCE(?:=.)?|-Werror", command), ["FORTIFY_SOURCE=2"], command)
            own = output.removeprefix("_deps/tovik-build/")
            if own in alone:
                self.assertEqual(*map(self.definitions, (command, alone[own])), command)
        self.do("cmake", "--build", "out", "--target", "by-hand", "tovik-process")
        self.do("tovik-plugin-check", "out/libby-hand.so")

    def run_product(self, program):
        self.start("ab://dialog?auto", command=[program])
        self.expect("xprop -id WINDOW WM_CLASS", 'WM_CLASS(STRING) = "ab", "Ab"')
        return self.finish()

    def test_product_refuses_what_could_not_work(self):
        (self.dir / "there").mkdir()
        (self.dir / "there/dangling").symlink_to("none")
        (self.dir / "out").mkdir()
        (self.dir / "out/secret").symlink_to("/etc/passwd")
        for arguments, fault in [
                (("abcdef", "new"), "no brand"), (("AB", "new"), "no brand"), (("x1", "new"), "brand"),
                (("setup", "new"), "no brand"), (("a", "new"), "no brand"), (("ab",), "needs a brand"),
                (("ab", "there"), "exists already"), (("ab", "a b"), "space"),
                (("ab", "there", "--replace"), "no product of the brand"),
                (("ab", "new", "--prefix", "/opt/bin/ab"), '"bin"'), (("ab", "new", "-x"), "option"),
                (("ab", "new", "--prefix", "opt"), "absolute"), (("ab", "new", "--icon"), "value"),
                (("ab", "new", "--plugin", "none"), "no file none"), (("ab", "new", "--title", "a\n"),
                 "control character"), (("ab", "new", "--title", "-x"), 'begins with "-"'),
                (("ab", "a#b"), "one of"), (("ab", "there/new", "--pages", "."), "of the pages"),
                (("ab", "new", "--pages", "out"), "out/secret leads out of the folder"),
                (("ab", "new", "--prefix", self.library.parents[1]), "one product, one directory"),
                (("ab", "new", "--plugin", self.library), "one product, one directory"),
                (("ab", "new", "--pages", "there"), "there/./dangling")]: # half made, and removed
            printed = self.do("tovik-product", *arguments, status=2)
            self.assertIn(fault, printed)
            self.assertEqual((printed.count("\n"), (self.dir / "new").exists()), (1, False), printed)
