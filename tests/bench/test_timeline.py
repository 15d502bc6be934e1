"""How the benchmarks make phases of the marks of a start."""
import pathlib
import sys
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "bench/driver"))
from timeline import durations, read_marks


class Timeline(unittest.TestCase):
    def test_first_mark_of_each_name_counts(self):
        text = "loaded 10\nready 20\nready 25\nweb-process 30\nloaded 40\nready 50\n"
        self.assertEqual(read_marks(text), {"loaded": 10, "ready": 20, "web-process": 30})

    def test_phases_add_up_to_the_median_end(self):
        self.assertEqual(durations([[1, 4, 9], [2, 5, 8], [9, 9, 9]]), [2, 3, 4])


if __name__ == "__main__":
    unittest.main()
