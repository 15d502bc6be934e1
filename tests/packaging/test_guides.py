"""The guides' commands, carried out as they stand with an installed Tovik."""
import guide
from installed import Installed
from shell import SOURCE


class Guides(Installed):
    def follow(self, path):
        return guide.follow(self, SOURCE / path, self.dir)

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
