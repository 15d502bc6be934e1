"""Which packages install-deps.sh asks for, on systems that have none of them."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from shell import SOURCE

# It says much of each package, more than a pipe holds.
APT = {"dpkg-query": "exit 1", "id": "echo 0", "apt-get": "",
       "apt-cache": '[ $2 = clang-tidy-14 ] || echo "Candidate: 1"; printf "%0200000d\\n" 0'}


class Dependencies(unittest.TestCase):
    def ask(self, commands, *arguments, **environment):
        """What the script prints on a system with these commands of its own, and its status."""
        with tempfile.TemporaryDirectory() as folder:
            for name in ("awk", "bash", "env"):
                (pathlib.Path(folder) / name).symlink_to(shutil.which(name))
            for name, body in commands.items():
                command = pathlib.Path(folder) / name
                command.write_text(f"#!/usr/bin/env bash\n{body}\n")
                command.chmod(0o700)
            done = subprocess.run(
                ["bash", SOURCE / "scripts/install-deps.sh", *arguments], env={"PATH": folder} | environment,
                text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            return done.stdout, done.returncode

    def test_systems_without_apt_are_told_their_own_names(self):
        run = "install-deps.sh: install these packages, then run the command again: "
        for commands, names in [
                ({"pacman": "exit 1"}, "gcc cmake ninja pkgconf gtk3 webkit2gtk-4.1"),
                ({"rpm": "exit 1"}, "gcc-c++ cmake ninja-build pkgconf-pkg-config gtk3-devel webkit2gtk4.1-devel"),
                ({"rpm": '[ "$3" = gcc-c++ ]', "zypper": ""},
                 "cmake ninja pkgconf-pkg-config gtk3-devel webkit2gtk3-devel")]:
            self.assertEqual(self.ask(commands, "run", DISPLAY=":0"), (run + names + "\n", 1))
        self.assertIn("xorg-server-xvfb", self.ask({"pacman": "exit 1"}, "run")[0])
        self.assertEqual(self.ask({"pacman": ""}, "test"), ("", 0))
        self.assertEqual(self.ask({}, "tests")[1], 2)

    def test_apt_installs_what_it_offers(self):
        printed, status = self.ask(APT, "test", "own")
        refused, asked = printed.splitlines()
        self.assertEqual(status, 0)
        self.assertRegex(refused, "^install-deps.sh: clang-tidy-14 is not offered here; ")
        asked = asked.removeprefix("Installing: ").split()
        self.assertNotIn("clang-tidy-14", asked)
        for name in ("g++", "libgtest-dev", "clang-format-14", "chromium", "own"):
            self.assertIn(name, asked)
        self.assertNotIn("libgtest-dev", self.ask(APT, "run")[0])
