"""The SDK as a package of npm: installed, checked, bundled, and as modules without a bundler."""
import json
import shutil
import subprocess

import guide
from browsed import Browsed
from shell import SOURCE

MODULES = """<script type="importmap">{ "imports": { "tovik-sdk": "./node_modules/tovik-sdk/index.js",
    "tovik-sdk/mock": "./node_modules/tovik-sdk/mock.js",
    "tovik-sdk/tovik-actions.js": "./node_modules/tovik-sdk/tovik-actions.js" } }</script>
<script type="module" src="%s"></script>"""


class Npm(Browsed):
    window_manager = True

    def setUp(self):
        super().setUp()
        self.project = self.dir / "project"
        self.project.mkdir()
        (self.project / "package.json").write_text('{"type": "module"}')
        self.install_package()

    def install_package(self):
        """Packs the SDK and installs it into the project, like npm also where that is missing."""
        package = json.loads((SOURCE / "sdk/package.json").read_text())
        changelog = (SOURCE / "packaging/debian/changelog").read_text()
        self.assertEqual(changelog.split()[1], f"({package['version']})")
        if shutil.which("npm"):
            self.do("npm", "pack", "--silent", SOURCE / "sdk")
            tarball, = self.project.glob("*.tgz")
            self.do("npm", "install", "--offline", "--no-audit", "--no-fund", tarball)
            return
        installed = self.project / "node_modules/tovik-sdk"
        patterns = [f"sdk/{pattern}" for pattern in (*package["files"], "package.json")]
        for source in (found for pattern in patterns for found in SOURCE.glob(pattern)):
            target = installed / source.relative_to(SOURCE / "sdk")
            target.parent.mkdir(parents=True, exist_ok=True)
            (shutil.copytree if source.is_dir() else shutil.copy)(source, target)

    def do(self, *command):
        done = subprocess.run(command, cwd=self.project, env=self.desktop(), text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual(done.returncode, 0, done.stdout)
        return done.stdout

    def test_package_conforms_in_a_bundle_and_without_a_bundler(self):
        source = shutil.copy(SOURCE / "tests/sdk/consumer/main.ts", self.project)
        self.do("tsc", "--strict", "--target", "es2020", "--module", "node16", source)
        self.do("esbuild", "main.ts", "--bundle", "--outfile=bundle.js")
        for scripts in ('<script src="bundle.js"></script>', MODULES % "main.js"):
            self.conform(self.project, scripts)

    def test_template_bundled_without_its_mock_signs_in_the_host(self):
        shutil.copytree(SOURCE / "sdk/templates/vite", self.project, dirs_exist_ok=True)
        self.do("esbuild", "src/main.ts", "--bundle", "--format=esm", "--outdir=dist",
                "--define:import.meta.env.DEV=false")
        page = self.project / "dist/index.html"
        page.write_text((self.project / "index.html").read_text().replace(
            "/src/main.ts", "./main.js").replace("</head>", '<link rel="stylesheet" href="main.css"></head>'))
        self.assertNotIn("No handler for", (self.project / "dist/main.js").read_text())
        guide.read(SOURCE / "sdk/README.md", self.dir)
        self.do("cc", "-shared", "-fPIC", "-Wl,-Bsymbolic", f"-I{SOURCE}/sdk/include", "../plugin.c",
                "-o", self.install() / "libtovik.so")
        self.process = self.spawn([self.host, "--print", "-url", page.as_uri()], text=True,
                                  env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.assertRegex(self.answer_by_keyboard()[0], r"^signed by \w*a\n$")
