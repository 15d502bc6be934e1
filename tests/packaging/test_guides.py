"""The guides' commands, carried out as they stand with an installed Tovik."""
import re
import subprocess

from installed import Installed
from shell import SOURCE


class Guides(Installed):
    def follow(self, guide):
        """Saves the files that a guide shows, and carries out its commands in order; whatever
        window they open is answered by keyboard. Returns what they printed."""
        text = (SOURCE / guide).read_text()
        for name, body in re.findall(r"ave as `([^`]+)`:\n\n```\w+\n(.*?)```", text, re.S):
            (self.dir / name).parent.mkdir(exist_ok=True)
            (self.dir / name).write_text(body)
        printed = ""
        for block in re.findall("```sh\n(.*?)```", text, re.S):
            self.process = self.spawn(["bash", "-euc", block], env=self.environment, cwd=self.dir,
                                      text=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            output, errors = self.answer_by_keyboard()
            self.assertEqual(self.process.returncode, 0, block + output + errors)
            printed += output
        return printed

    def test_readme(self):
        self.assertRegex(self.follow("README.md"), r"OK    brand: ab\n(.*\n)*signed by \w*a\n$")

    def test_pages_guide(self):
        self.dir /= "50%25 #1?"  # of which its commands make a URL
        self.dir.mkdir()
        self.assertRegex(self.follow("docs/pages.md"), r"^\w*a\n$")

    def test_plugins_guide(self):
        self.assertEqual(self.follow("docs/plugins.md").count("user agent: Counter/1.0 "), 2)

    def test_integration_guide(self):
        self.assertRegex(self.follow("docs/integration.md"), r"OK    brand: ab\n(.*\n)*\w*a\nanswer: \w*a\n$")
