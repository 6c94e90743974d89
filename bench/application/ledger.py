"""The figures that were written down (figures.tsv), and what is measured beside them."""

import pathlib
import platform
import statistics

FILE = pathlib.Path(__file__).with_name("figures.tsv")
GROWTH = 1.1    # what a figure may grow before it counts as grown
HEAD = ("# What each figure of the application should be at most, and what it was when it was last written\n"
        "# down with --keep. Ratios to a baseline of the same run, unless a unit says otherwise.\n"
        "# figure\tgoal\twas\n")
OF = "# of: "    # the line that tells on which system


def system():
    release = platform.freedesktop_os_release()
    return " ".join((release["ID"], release.get("VERSION_ID", ""), platform.machine()))


class Ledger:
    def __init__(self):
        self.rows = {}      # figure -> [goal, what it was]
        self.of = None      # the system that they were written down on: others' libraries cost otherwise
        for line in FILE.read_text().splitlines():
            if line.startswith(OF):
                self.of = line.removeprefix(OF)
            elif not line.startswith("#"):
                figure, goal, was = line.split("\t")
                self.rows[figure] = [float(goal), float(was)]
        self.lines, self.measured, self.grown, self.missed = [], {}, [], []

    def printHead(self):
        self.show(f"{'':58} {'ours':>9} {'baseline':>9} {'':4} {'ratio':>6} {'goal':>6} {'was':>6}")

    def ratio(self, figure, pairs, unit):
        """The median of the ratios of ours to the baseline, of pairs that were measured in turns."""
        ratio = statistics.median(ours / baseline for ours, baseline in pairs)
        ours, baseline = (statistics.median(values) for values in zip(*pairs))
        self.add(figure, ratio, f"{ours:9.2f} {baseline:9.2f} {unit:4}", isRatio=True)

    def value(self, figure, values, unit, baselines=()):
        """The median of values that are their own measure; a baseline is only shown."""
        beside = f"{statistics.median(baselines):9.2f}" if baselines else " " * 9
        value = statistics.median(values)
        self.add(figure, value, f"{value:9.2f} {beside} {unit:4}", isRatio=False)

    def add(self, figure, value, text, isRatio):
        self.measured[figure] = value
        goal, was = self.rows.setdefault(figure, [value, value])
        most = was * GROWTH if isRatio else max(goal, was * GROWTH)
        # As precise as it is written down: where nothing was, the next hundredth is no growth.
        hasGrown = round(value, 2) > round(most, 2) + 0.005
        remark = ""
        if hasGrown:
            self.grown.append(figure)
            remark = "   GROWN"
        elif round(value, 2) > goal:
            self.missed.append(figure)
            remark = "   beyond its goal"
        self.show(f"{figure:58} {text} {f'{value:6.2f}' if isRatio else ' ' * 6}"
                  f" {goal:6.2f} {was:6.2f}{remark}")

    def show(self, line):
        self.lines.append(line.rstrip())
        print(line.rstrip(), flush=True)

    def keep(self):
        for figure, value in self.measured.items():
            self.rows[figure][1] = value
        rows = (f"{figure}\t{goal:.2f}\t{was:.2f}\n" for figure, (goal, was) in self.rows.items())
        FILE.write_text(f"{HEAD}{OF}{system()}\n" + "".join(rows))
