"""The tables and the two plots of docs/detection.md, from what scripts/train-ears judge measured."""

import pickle

import numpy
from scipy.signal import sosfilt

from . import judge, material, pool, scenes, training

DOCS = material.ROOT / "docs/images"
STEPS = numpy.arange(-4.0, 8.1, 0.5)     # of the threshold, for the curves


def merged(heard, keys, quiet, loud):
    total = judge.Tally()
    for key in keys:
        total.add(heard[key].tally(quiet, loud))
    return total


def rate(tally):
    value, low, high = tally.alarmRate()
    return f"{value:.1f} ({low:.1f} to {high:.1f})"


def share(tally):
    value, low, high = tally.recall()
    return f"{100 * value:.1f} % ({100 * low:.1f} to {100 * high:.1f})"


def rows(heard, quiet, loud):
    """(background, level): the tally without blows, with the model's, with recorded ones."""
    result = {}
    for background, level, blows in heard:
        kind = {"none": 0, "model": 1}.get(blows, 2)
        row = result.setdefault((background, level), [judge.Tally() for _ in range(3)])
        row[kind].add(heard[background, level, blows].tally(quiet, loud))
    return result


def table(heard, quiet, loud):
    """Worst first: by alarms, then by model blows missed."""
    lines = ["| background | level | hours | alarms an hour | model blows | recorded blows | weak | rank | longest |",
             "|---|---|---|---|---|---|---|---|---|"]
    found = rows(heard, quiet, loud)
    for (background, level), (none, model, drums) in sorted(
            found.items(), key=lambda item: (-item[1][0].alarmRate()[0], item[1][1].recall()[0])):
        weak = judge.Tally()
        weak.add(model)
        lines.append(
            f"| {background} | {level} | {none.hours:.2f} | {rate(none)} | {share(model)} | "
            f"{share(drums)} | {100 * weak.weakFound / max(1, weak.weak):.0f} % | {model.rank():.3f} | "
            f"{1e3 * max(model.delays + drums.delays + [0]):.0f} ms |")
    return "\n".join(lines)


def together(heard, quiet, loud):
    """The same, all corpora of a level and kind together."""
    groups = {}
    for (background, level), parts in rows(heard, quiet, loud).items():
        kind = background.split()[0] if " " in background else background
        group = groups.setdefault((kind, level), [judge.Tally() for _ in range(3)])
        for mine, theirs in zip(group, parts):
            mine.add(theirs)
    lines = ["| | level | hours | alarms an hour | model blows | recorded blows |", "|---|---|---|---|---|---|"]
    for (kind, level), (none, model, drums) in groups.items():
        lines.append(f"| {kind} | {level} | {none.hours:.1f} | {rate(none)} | {share(model)} | {share(drums)} |")
    return "\n".join(lines)


def drumTable(heard, quiet, loud):
    kits = {}
    for background, level, blows in heard:
        if blows.startswith("drums") and background == "quiet":
            kits.setdefault(blows, judge.Tally()).add(heard[background, level, blows].tally(quiet, loud))
    lines = ["| kit, quiet room | blows found | rank |", "|---|---|---|"]
    for kit, tally in sorted(kits.items(), key=lambda item: item[1].recall()[0]):
        lines.append(f"| {kit} | {share(tally)} | {tally.rank():.3f} |")
    return "\n".join(lines)


def results():
    folds = {}
    for fold in range(material.FOLDS):
        path = training.RESULTS / f"fold-{fold}.pk"
        if path.exists():
            for key, value in pickle.loads(path.read_bytes()).items():
                name = key if " " in key[0] or fold == 0 else None
                if name is None:      # quiet, fan, typing, rumble: every fold's network
                    folds.setdefault(key, value)
                    if folds[key] is not value:
                        folds[key].scenes += value.scenes
                else:
                    folds[key] = value
    path = training.RESULTS / "kept.pk"
    return folds, pickle.loads(path.read_bytes()) if path.exists() else {}


class Picture:
    """As much SVG as two plots need."""

    def __init__(self, width, height):
        self.width, self.height = width, height
        self.parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" '
                      f'font-family="sans-serif" font-size="12">',
                      f'<rect width="{width}" height="{height}" fill="white"/>']

    def text(self, x, y, words, anchor="start", colour="black"):
        self.parts.append(f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" fill="{colour}">{words}</text>')

    def line(self, points, colour="black", width=1.5):
        path = " ".join(f"{x:.1f},{y:.1f}" for x, y in points)
        self.parts.append(f'<polyline points="{path}" fill="none" stroke="{colour}" stroke-width="{width}"/>')

    def box(self, x, y, width, height, colour):
        self.parts.append(f'<rect x="{x:.1f}" y="{y:.1f}" width="{width:.2f}" height="{height:.2f}" fill="{colour}"/>')

    def save(self, path):
        path.write_text("\n".join(self.parts) + "\n</svg>\n")


def curves(heard, path):
    """Alarms an hour against the blows found, for every threshold."""
    picture = Picture(720, 400)
    left, right, top, bottom = 60, 470, 20, 350
    x = lambda alarms: left + (right - left) * numpy.log10(max(alarms, 0.3) / 0.3) / numpy.log10(1000)
    y = lambda recall: bottom - (bottom - top) * (max(recall, 0.4) - 0.4) / 0.6
    for alarms in (0.3, 1, 3, 10, 30, 100, 300):
        picture.line([(x(alarms), top), (x(alarms), bottom)], "#ddd", 1)
        picture.text(x(alarms), bottom + 16, "0" if alarms == 0.3 else f"{alarms:g}", "middle")
    for recall in (0.4, 0.5, 0.6, 0.7, 0.8, 0.9, 1.0):
        picture.line([(left, y(recall)), (right, y(recall))], "#ddd", 1)
        picture.text(left - 6, y(recall) + 4, f"{100 * recall:.0f} %", "end")
    picture.text((left + right) / 2, bottom + 36, "false alarms an hour", "middle")
    colours = iter(("#c00", "#06c", "#080", "#a60", "#808", "#088", "#666", "#e08"))
    place = top + 10
    for (background, level) in sorted({key[:2] for key in heard if " " in key[0]}):
        for blows in ("model", "recorded"):
            colour = next(colours, "#000")
            points = []
            for step in STEPS:
                quiet, loud = training.QUIET + step, training.LOUD + step
                none, model, drums = rows({k: v for k, v in heard.items() if k[:2] == (background, level)},
                                          quiet, loud)[background, level]
                points.append((x(none.alarmRate()[0]), y((model if blows == "model" else drums).recall()[0])))
            picture.line(points, colour)
            here = points[int(numpy.argmin(numpy.abs(STEPS)))]
            picture.parts.append(f'<circle cx="{here[0]:.1f}" cy="{here[1]:.1f}" r="4" fill="{colour}"/>')
            picture.text(right + 14, place, f"{background}, {level}, {blows}", colour=colour)
            place += 18
    picture.text(right + 14, place + 10, "dots: as checked in")
    picture.save(path)


def oneBlow(path):
    """A model knuckle's way through the chain: sound, strength, bands, the moment of judgement."""
    maker = scenes.Maker([], [])
    scene = maker.scene(7, background="fan", blows="knuckle", plain=True, gap=(1.0, 2.5))
    blow = max(scene.blows, key=lambda b: b.amplitude if b.amplitude < 0.5 else 0)
    found = pool.Ears().hear(scene.samples, judge.THRESHOLD)
    candidate = found[numpy.argmin(numpy.abs(found["time"] - blow.time))]
    first = int((candidate["decided"] - 0.06) * scenes.RATE)
    sound = scene.samples / 32768
    strength = numpy.abs(sosfilt(scenes.STRENGTH, sound))
    picture = Picture(720, 430)
    left, right = 110, 700
    across = lambda i: left + (right - left) * i / (0.06 * scenes.RATE)
    window = range(first, first + int(0.06 * scenes.RATE))
    for title, values, middle, height in (("sound", sound, 70, 50), ("strength", strength, 190, 60)):
        scale = height / numpy.abs(values[window.start:window.stop]).max()
        picture.text(10, middle, title)
        picture.line([(across(i - first), middle - values[i] * scale) for i in window], "#06c", 1)
    scale = 60 / strength[window.start:window.stop].max()
    picture.line([(left, 190 - judge.THRESHOLD * scale), (right, 190 - judge.THRESHOLD * scale)], "#c00", 1)
    picture.text(10, 206, "(red: minimum)")
    cells = candidate["features"][:270].reshape(30, 9)
    for frame in range(30):
        for band in range(9):
            dark = int(255 - 235 * max(0.0, min(1.0, (cells[frame, band] + 1) / 2)))
            picture.box(left + (right - left) * frame / 30, 370 - 17 * (band + 1), (right - left) / 30 + 0.3,
                        17.3, f"rgb({dark},{dark},255)" if dark > 40 else "rgb(20,20,200)")
    picture.text(10, 230, "3500 Hz")
    picture.text(10, 300, "nine bands")
    picture.text(10, 368, "50 Hz")
    begin = across((candidate["time"] * scenes.RATE) - first)
    picture.line([(begin, 15), (begin, 375)], "#c00", 1)
    picture.text(begin, 392, "candidate", "middle", "#c00")
    picture.text(right, 392, "judgement", "end", "#c00")
    for ms in range(0, 61, 10):
        picture.text(left + (right - left) * ms / 60, 412, f"{ms} ms", "middle")
    picture.save(path)


def write():
    folds, kept = results()
    parts = []
    if folds:
        parts += ["Left-out corpora, worst first", table(folds, training.QUIET, training.LOUD),
                  "Left-out corpora, together", together(folds, training.QUIET, training.LOUD),
                  "Left-out kits", drumTable(folds, training.QUIET, training.LOUD)]
    if kept:
        parts += ["Kept for judging", table(kept, training.QUIET, training.LOUD)]
        curves(kept, DOCS / "alarms-and-blows.svg")
    (training.RESULTS / "tables.md").write_text("\n\n".join(parts) + "\n")
    oneBlow(DOCS / "one-blow.svg")
