"""An installation in a temporary directory, with the plug-in of the benchmarks."""

import copy
import os
import shutil


class Stage:
    """The programs of the build, laid out as bin/ and lib/, and room for a run's files."""

    def __init__(self, directory, build, pages):
        self.directory = directory
        self.build = build
        self.tools = build / "bench"
        self.pages = pages
        self.plots = self.tools / "plots"
        self.errors = directory / "errors"
        self.answer = directory / "answer"
        (directory / "home").mkdir(mode=0o700)
        (directory / "bin").mkdir()
        (directory / "lib").mkdir()
        self.host = directory / "bin" / "tovik"
        self.library = directory / "lib" / "libtovikgui.so"
        self.command_line = directory / "bin" / "bench-command-line"
        shutil.copy(build / "bin" / "tovik", self.host)
        shutil.copy(self.tools / "bench-command-line", self.command_line)
        shutil.copy(build / "lib" / "libtovikgui.so", self.library)
        shutil.copy(self.tools / "libtovik.so", self.library.parent)

    def environment(self, display):
        """Environment of a run: nothing of the user's desktop, and no message bus, for which
        the accessibility support of GTK would wait."""
        kept = {name: os.environ[name] for name in ("PATH", "LANG") if name in os.environ}
        home = str(self.directory / "home")
        return kept | {
            "DISPLAY": display,
            "HOME": home,
            "XDG_RUNTIME_DIR": home,
            "GDK_BACKEND": "x11",
            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
        }

    def page_url(self, name, query=""):
        return (self.pages / name).as_uri() + query

    def desk(self, number):
        """The same installation with files of its own for what a run leaves, for runs at once."""
        desk = copy.copy(self)
        desk.errors = self.directory / f"errors-{number}"
        desk.answer = self.directory / f"answer-{number}"
        return desk

    def clear(self):
        """Removes what a run has left."""
        self.errors.unlink()
        self.answer.unlink()

    def host_command(self, url, *options):
        return [self.host, *options, "-url", url, "-store", self.answer]

    def print_command(self, url):
        return [self.host, "--print", "-url", url]

    def window_command(self, program, url):
        return [self.tools / program, url]

    def add_library(self, name, new_name=None):
        """Puts a library of the benchmarks where WebKit opens it as a web extension."""
        shutil.copy(self.tools / name, self.library.parent / (new_name or name))

    def remove_library(self, name):
        (self.library.parent / name).unlink()
