"""One page, built by a bundler with several frameworks and shown in every way. See bundlers.sh."""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path[:0] = [str(ROOT / "tests" / room) for room in ("e2e", "sdk")]

import guide  # noqa: E402
from shell import BUILD, Shell  # noqa: E402

PICTURES = ROOT / "build/bundlers"
WINDOW = "xdotool search --onlyvisible --class '^(tovik|ab|try)$'"


class Bundlers(Shell):
    window_manager = True

    def setUp(self):
        super().setUp()
        self.environment["PATH"] = f"{BUILD}/bin:{os.environ['PATH']}"
        settings = self.dir / ".config/gtk-3.0/settings.ini"
        settings.parent.mkdir(parents=True)
        settings.write_text("[Settings]\ngtk-cursor-blink=false\n")  # pictures are compared
        self.sdk = shutil.copytree(ROOT / "sdk", self.dir / "sdk")
        build = guide.read(self.sdk / "README.md", self.sdk)[0]
        self.do(self.sdk, "bash", "-euc", build)
        self.plugin = self.sdk / "libtovik.so"
        shutil.copy(self.plugin, self.install())
        shutil.rmtree(PICTURES, ignore_errors=True)
        PICTURES.mkdir(parents=True)
        self.first = None

    def do(self, folder, *command):
        # With the caller's own home directory, where npm keeps what it has loaded.
        done = subprocess.run(command, cwd=folder, text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, env=self.environment | {"HOME": os.environ["HOME"]})
        self.assertEqual(done.returncode, 0, done.stdout)
        return done.stdout

    def build_template(self):
        """Carries out the commands of the SDK's guide; two of them show the page."""
        text = (self.sdk / "README.md").read_text()
        commands, = (block for block in re.findall("```console\n(.*?)```", text, re.S) if "npm" in block)
        self.process = self.spawn(["bash", "-euc", re.sub(r"^\$ ", "", commands, flags=re.M)], text=True,
                                  cwd=self.sdk, env=self.environment, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT)
        printed = self.answer_by_keyboard()[0]
        self.assertEqual(len(re.findall(r"^signed by \w*a$", printed, re.M)), 2, printed)
        return self.sdk / "mydialog"

    def build(self, name, packages):
        """Has the framework draw what is within <main> of the template's page, and builds that."""
        project = shutil.copytree(ROOT / "sdk/templates/vite", self.dir / name)
        shutil.copytree(ROOT / "tests/bundlers" / name, project, dirs_exist_ok=True)
        main, = (path.name for path in (ROOT / "tests/bundlers" / name).glob("src/main.*"))
        page = project / "index.html"
        page.write_text(re.sub("<main>.*</main>", "<main></main>", page.read_text(), flags=re.S)
                        .replace("main.ts", main))
        self.do(project, "npm", "install", "--no-audit", "--no-fund", self.sdk, *packages)
        self.do(project, "npx", "vite", "build")
        return project

    def ways(self, project):
        """The commands that show the page, each by its name."""
        pages = project / "dist"
        yield "file", [self.host, "-url", (pages / "index.html").as_uri()]
        root = shutil.copytree(pages, project / "root")
        for library in (self.plugin, BUILD / "lib/libtovikgui.so"):
            shutil.copy(library, root)
        yield "root", [BUILD / "bin/tovik", "-root", f"{root}/", "-url", "index.html"]
        product = project / "product"
        self.do(project, "tovik-product", "ab", product, "--plugin", self.plugin, "--pages", pages)
        yield "product", [product / "bin/ab"]
        yield "server", ["npm", "run", "--silent", "--prefix", project, "tovik", "--",
                         "--plugin", self.plugin, "--"]

    def picture(self, path):
        """Takes a picture of the window and returns what identifies its size and its pixels."""
        window = self.ask(WINDOW).strip()
        self.ask(f"import -silent -window {window} {path}")
        size, colours, pixels = (self.ask(f"identify -format '%wx%h %k %#' {path}") or "0 0 0").split()
        # One of a window that is not drawn yet has few colours.
        return (size, pixels) if int(colours) > 50 else None

    def drawn(self, path):
        """Waits for a picture that does not change any more."""
        seen = []
        while len(seen) < 10:
            taken = self.until(lambda: self.picture(path))
            seen = [*seen, taken] if taken in seen else [taken]
        return taken

    def show(self, name, command):
        """Shows the page until it looks like the first one, and answers it."""
        path = PICTURES / f"{name}.png"
        self.start("--print", command=command)
        self.first = self.first or self.drawn(path)
        self.until(lambda: self.picture(path) == self.first)
        self.ask(f"{WINDOW} windowactivate --sync type Ada && xdotool key Return")
        self.finish()
        self.assertEqual(self.trace, "signed by Ada\n", self.errors)

    def try_all(self, name, project):
        ways = []
        for way, command in self.ways(project):
            self.show(f"{name}-{way}", command)
            ways.append(way)
        size = sum(path.stat().st_size for path in project.glob("dist/**/*") if path.is_file())
        print(f"ok  {name:9} {size / 1000:4.0f} kB  {', '.join(ways)}: the same picture, signed by Ada",
              flush=True)

    def test_page_is_the_same_with_every_framework(self):
        self.try_all("template", self.build_template())
        pages = (ROOT / "docs/pages.md").read_text()
        for name, packages in re.findall(r"^\| (\w+) \| `npm install ([^`]+)` \|$", pages, re.M):
            self.try_all(name.lower(), self.build(name.lower(), packages.split()))


if __name__ == "__main__":
    unittest.main(verbosity=0)
