"""How the benchmarks compare two contestants and judge the ratio."""
import itertools
import pathlib
import sys
import unittest

sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "bench/driver"))
from pairs import Spread, compare, spread_of


class Pairs(unittest.TestCase):
    def test_interval_holds_the_median(self):
        # Of nine different values, a sample's median is below the second one with a probability of
        # less than 0.2 %, and at most the second one with 3 %; above the eighth one in the same way.
        rows = [([1.02], (1.02, 1.02, 1.02)), ([1.5] * 6, (1.5, 1.5, 1.5)),
                ([9, 2, 7, 4, 5, 6, 3, 8, 1], (5, 2, 8)),
                ([1.0] * 30 + [100.0], (1, 1, 1))]
        for ratios, (median, low, high) in rows:
            self.assertEqual(spread_of(ratios), Spread(median, low, high), ratios)

    def test_ratio_is_judged_by_its_interval_and_median(self):
        rows = [((0.995, 0.98, 1.02), True, True), ((1.009, 0.999, 1.02), True, True),
                ((1.02, 0.95, 1.09), False, False), ((1.009, 1.006, 1.01), False, True),
                ((0.9, 0.8, 1.1), True, False)]
        for values, met, even in rows:
            spread = Spread(*values)
            self.assertEqual((spread.meets(1.00), spread.is_even()), (met, even), values)

    def test_what_grows_during_a_round_weighs_on_both(self):
        clock = itertools.count(100)
        calls = []

        def contestant(name, factor):
            def measure():
                calls.append(name)
                return factor * next(clock), 10 * factor
            return measure

        time, size = compare(contestant("ours", 3), contestant("theirs", 2), 2)
        self.assertEqual(calls, ["ours", "theirs", "theirs", "ours", *["theirs"] * 4] * 2)
        self.assertAlmostEqual(time.ratio.median, 1.5, places=3)
        self.assertAlmostEqual(time.control.median, 1, places=3)
        self.assertEqual((size.ours, size.theirs, size.ratio), (30, 20, Spread(1.5, 1.5, 1.5)))


if __name__ == "__main__":
    unittest.main()
