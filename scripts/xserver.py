"""An X server of one's own, for programs that show windows where there is no screen."""
import os
import subprocess


def start(screen, spawn=subprocess.Popen):
    """Starts an X server with a screen of this size, "WIDTHxHEIGHT"; spawn is called as Popen is.
    Returns its process, which the caller ends, and the name of its display."""
    reader, writer = os.pipe()
    server = spawn(
        ["Xvfb", "-displayfd", str(writer), "-noreset", "-nolisten", "tcp",
         "-screen", "0", screen + "x24"], pass_fds=[writer], stderr=subprocess.DEVNULL)
    os.close(writer)
    with open(reader, encoding="ascii") as number:
        return server, ":" + number.readline().strip()
