"""Two contestants compared pair by pair, and how sure the median of their ratios is."""

import random
from dataclasses import dataclass
from statistics import median

RESAMPLES = 5000
# A median this near to the wanted ratio, or that of the control to 1, is not told from it.
TOLERANCE = 0.01


@dataclass
class Spread:
    """The median of some ratios and the interval that holds it with a probability of 95 %."""

    median: float
    low: float
    high: float

    def __str__(self):
        return f"{self.median:.2f} ({self.low:.2f} to {self.high:.2f})"

    def meets(self, wanted):
        """Whether the ratios agree with at most `wanted`, which has two decimals."""
        return round(self.low, 2) <= wanted and self.median <= wanted * (1 + TOLERANCE)

    def is_even(self):
        """Whether the ratios are those of a contestant and itself."""
        return abs(self.median - 1) <= TOLERANCE


def spread_of(ratios):
    """Bootstrap: the middle 95 % of the medians of samples drawn from the ratios with replacement.
    The draws, and so the verdict, depend on the ratios alone."""
    draw = random.Random(0)
    medians = sorted(median(draw.choices(ratios, k=len(ratios))) for _ in range(RESAMPLES))
    tail = RESAMPLES // 40
    return Spread(median(ratios), medians[tail], medians[-1 - tail])


@dataclass
class Comparison:
    """One of the measured values, ours and the reference's."""

    ours: float
    theirs: float
    ratio: Spread
    control: Spread  # of the reference and itself


def alternate(first, second):
    """Measures both in the order A B B A, in which what changes steadily weighs equally on both.
    Returns two pairs of results."""
    a, b, c, d = first(), second(), second(), first()
    return [(a, b), (d, c)]


def compare(ours, theirs, rounds):
    """A comparison for each value. `ours` and `theirs` measure a contestant once and return equally
    many values. In each round the reference is also compared with itself."""
    pairs, control = [], []
    for _ in range(rounds):
        pairs += alternate(ours, theirs)
        control += alternate(theirs, theirs)

    def ratio(of, value):
        return spread_of([a[value] / b[value] for a, b in of])

    return [
        Comparison(
            median(a[value] for a, _ in pairs),
            median(b[value] for _, b in pairs),
            ratio(pairs, value),
            ratio(control, value),
        )
        for value in range(len(pairs[0][0]))
    ]
