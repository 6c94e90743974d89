"""What the detector makes of scenes whose blows are known: alarms an hour and blows found, each with
95 % bounds."""

import dataclasses
import math

import numpy
from scipy.stats import beta, chi2, spearmanr

from . import pool, scenes

THRESHOLD = 0.05
NEAR = 0.05     # s between a blow and the report that belongs to it


@dataclasses.dataclass
class Tally:
    hours: float = 0.0
    alarms: int = 0
    blows: int = 0      # of twice the threshold and more
    found: int = 0
    weak: int = 0       # between once and twice
    weakFound: int = 0
    forces: list = dataclasses.field(default_factory=list)
    amplitudes: list = dataclasses.field(default_factory=list)
    delays: list = dataclasses.field(default_factory=list)

    def add(self, other):
        for field in dataclasses.fields(self):
            setattr(self, field.name, getattr(self, field.name) + getattr(other, field.name))

    def alarmRate(self):
        """Alarms an hour and the bounds (Poisson, exact)."""
        n, h = self.alarms, max(self.hours, 1e-9)
        low = chi2.ppf(0.025, 2 * n) / 2 / h if n else 0.0
        return n / h, low, chi2.ppf(0.975, 2 * n + 2) / 2 / h

    def recall(self):
        """The share of the blows that were found and its bounds (Clopper and Pearson)."""
        n, k = self.blows, self.found
        if n == 0:
            return math.nan, math.nan, math.nan
        low = beta.ppf(0.025, k, n - k + 1) if k else 0.0
        high = beta.ppf(0.975, k + 1, n - k) if k < n else 1.0
        return k / n, low, high

    def rank(self):
        return float(spearmanr(self.forces, self.amplitudes)[0]) if len(self.forces) > 2 else math.nan


def compare(scene, knocks, threshold=THRESHOLD):
    tally = Tally(hours=scenes.SECONDS / 3600)
    used = numpy.zeros(len(knocks), bool)
    for blow in scene.blows:
        strong = blow.amplitude >= 2 * threshold
        weak = not strong and blow.amplitude >= threshold
        tally.blows += strong
        tally.weak += weak
        near = numpy.flatnonzero(~used & (numpy.abs(knocks["time"] - blow.time) < NEAR))
        if len(near):
            used[near[0]] = True
            tally.found += strong
            tally.weakFound += weak
            tally.forces.append(blow.amplitude)
            tally.amplitudes.append(float(knocks["amplitude"][near[0]]))
            tally.delays.append(float(knocks["decided"][near[0]]) - blow.time)
    tally.alarms = int((~used).sum())
    return tally


def judge(ears, maker, seeds, **options):
    total = Tally()
    for seed in seeds:
        scene = maker.scene(seed, plain=True, gap=(1.0, 2.5), **options)
        total.add(compare(scene, ears.hear(scene.samples, THRESHOLD)))
    return total
