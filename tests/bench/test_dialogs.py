"""What the benchmarks find after many dialogs, and when their cost counts as growing."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "bench/driver"))
from dialogs import DIALOGS, judge, left_over, surroundings
from table import milliseconds


class Dialogs(unittest.TestCase):
    def test_what_is_left_is_counted(self):
        with tempfile.TemporaryDirectory() as own, tempfile.TemporaryDirectory() as other:
            home = pathlib.Path(own, "home")
            home.mkdir()
            before = surroundings(pathlib.Path(own), pathlib.Path(other))
            self.assertEqual(left_over(before, before).verdict(), "met")
            pathlib.Path(home, "deep").touch()
            pathlib.Path(other, "file").touch()
            with subprocess.Popen(["cat"], stdin=subprocess.PIPE) as child:
                after = surroundings(pathlib.Path(own), pathlib.Path(other))
                child.stdin.close()
            left = {f"process {child.pid}", f"{home}/deep", os.path.join(other, "file")}
            # Other programs of the machine may have shared memory of their own.
            self.assertEqual({thing for thing in after - before if "shared" not in thing}, left)
            self.assertEqual(left_over(before, before | left).cells()[-1], "missed")

    def test_cost_of_a_dialog_must_not_grow(self):
        for power, verdict in ((0.9, "met"), (1, "met"), (1.2, "missed"), (2, "missed")):
            sums = [100 * number**power for number in range(1, DIALOGS + 1)]
            self.assertEqual(judge("time", "", sums, milliseconds).verdict(), verdict, power)


if __name__ == "__main__":
    unittest.main()
