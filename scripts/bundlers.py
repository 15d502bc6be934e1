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
FRAMEWORKS = {
    "template": [],
    "react": ["react@19", "react-dom@19", "@vitejs/plugin-react@4"],
    "vue": ["vue@3", "@vitejs/plugin-vue@5"],
    "svelte": ["svelte@5", "@sveltejs/vite-plugin-svelte@5"],
}


class Bundlers(Shell):
    window_manager = True

    def setUp(self):
        super().setUp()
        self.environment["PATH"] = f"{BUILD}/bin:{os.environ['PATH']}"
        settings = self.dir / ".config/gtk-3.0/settings.ini"
        settings.parent.mkdir(parents=True)
        settings.write_text("[Settings]\ngtk-cursor-blink=false\n")  # pictures are compared
        guide.read(ROOT / "sdk/README.md", self.dir)
        self.plugin = self.dir / "libtovik.so"
        self.do(self.dir, "cc", "-shared", "-fPIC", "-Wl,-Bsymbolic", f"-I{ROOT}/sdk/include", "plugin.c",
                "-o", self.plugin)
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

    def build(self, name, packages):
        """Copies the template, lets the framework draw what is within <main>, and builds it."""
        project = self.dir / name
        shutil.copytree(ROOT / "sdk/templates/vite", project)
        if packages:
            shutil.copytree(ROOT / "tests/bundlers" / name, project, dirs_exist_ok=True)
            page = project / "index.html"
            main, = (path.name for path in (ROOT / "tests/bundlers" / name).glob("src/main.*"))
            page.write_text(re.sub("<main>.*</main>", "<main></main>", page.read_text(), flags=re.S)
                            .replace("main.ts", main))
        self.do(project, "npm", "install", "--no-audit", "--no-fund", ROOT / "sdk", *packages)
        if packages:
            self.do(project, "npx", "vite", "build")
        else:
            self.do(project, "npm", "test")
            self.do(project, "npm", "run", "build")
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
        window = self.ask("xdotool search --onlyvisible --class '^(tovik|ab|try)$'").strip()
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
        self.ask("xdotool search --onlyvisible --class '^(tovik|ab|try)$' windowactivate --sync"
                 " type Ada && xdotool key Return")
        self.finish()
        self.assertEqual(self.trace, "signed by Ada\n", self.errors)

    def test_frameworks(self):
        for name, packages in FRAMEWORKS.items():
            project = self.build(name, packages)
            shown = []
            for way, command in self.ways(project):
                self.show(f"{name}-{way}", command)
                shown.append(way)
            size = sum(path.stat().st_size for path in project.glob("dist/**/*") if path.is_file())
            print(f"ok  {name:9} {size / 1000:4.0f} kB  {', '.join(shown)}: the same picture, signed by Ada",
                  flush=True)


if __name__ == "__main__":
    unittest.main(verbosity=0)
