"""An installation made by `cmake --install`, under a prefix that nothing was configured for."""
import os
import subprocess

from shell import BUILD, PATIENCE, Shell


class Installed(Shell):
    window_manager = True

    def setUp(self):
        super().setUp()
        self.stage = self.dir / "stage"
        self.do("sh", "-c", 'umask 0 && cmake --install "$0" --prefix "/opt/some where"', BUILD,
                DESTDIR=self.stage)
        self.prefix = (self.stage / "opt/some where").rename(self.dir / "moved")
        self.library, = self.prefix.rglob("libtovikgui.so")
        self.environment |= {
            "PATH": f"{self.prefix}/bin:{os.environ['PATH']}",
            "CMAKE_PREFIX_PATH": str(self.prefix),
            "PKG_CONFIG_PATH": str(next(self.prefix.rglob("pkgconfig")))}

    def do(self, *command, status=0, **environment):
        """Carries out a command that has to end with this status; returns all that it printed."""
        done = subprocess.run(command, cwd=self.dir, env=self.desktop() | environment, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=5 * PATIENCE)
        self.assertEqual(done.returncode, status, done.stdout)
        return done.stdout
