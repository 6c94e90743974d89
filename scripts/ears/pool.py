"""Candidates: what the detector's own ears make of scenes."""

import subprocess

import numpy

from . import material

EARS = material.ROOT / "build/release/bench/detection/detection-ears"
FEATURES = 297
RECORD = numpy.dtype([("time", "<f4"), ("decided", "<f4"), ("amplitude", "<f4"),
                      ("loudness", "<f4"), ("features", "<f4", (FEATURES,))])
KNOCK = numpy.dtype(RECORD.descr[:4])
SOFTEST = 0.03      # the minimum amplitude of the training
MOST = 700          # of one scene's other candidates


class Ears:
    """The detector in a process of its own: with `weights`, its judgement; without, its
    candidates."""

    def __init__(self, weights=None):
        command = [str(EARS)] + (["knocks", str(weights)] if weights else [])
        self.dtype = KNOCK if weights else RECORD
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def hear(self, samples, minimum, rate=material.RATE):
        self.process.stdin.write(f"{rate} {minimum} {len(samples)}\n".encode())
        self.process.stdin.write(samples.tobytes())
        self.process.stdin.flush()
        count = int(numpy.frombuffer(self.process.stdout.read(4), "<u4")[0])
        return numpy.frombuffer(self.process.stdout.read(count * self.dtype.itemsize), self.dtype)


def labelled(scene, found, r):
    """Which candidates are blows (1), which are not (0), which prove nothing (-1), and whose."""
    labels = numpy.zeros(len(found), numpy.int8)
    sources = numpy.full(len(found), "", object)
    numbers = numpy.full(len(found), -1)
    for number, blow in enumerate(scene.blows):
        since = found["time"] - blow.time
        near = (since > -0.015) & (since < 0.1)
        labels[near] = -1
        # Blows that drown in what is louder at that time teach nothing.
        at = near & (since > -0.003) & (since < 0.014)
        if blow.amplitude > SOFTEST and (found["amplitude"][at] < 2.0 * blow.amplitude).any():
            labels[at & (found["amplitude"] < 2.0 * blow.amplitude)] = 1
        sources[near] = blow.source
        numbers[near] = number
    others = numpy.flatnonzero(labels == 0)
    kept = labels == 1
    kept[r.permutation(others)[:MOST]] = True
    return labels[kept], sources[kept], numbers[kept], kept


def gather(maker, seeds, **options):
    """All candidates of the scenes of these seeds."""
    ears = Ears()
    features, labels, sources, blows, backgrounds, loudness = [], [], [], [], [], []
    for seed in seeds:
        scene = maker.scene(seed, **options)
        found = ears.hear(scene.samples, SOFTEST)
        label, source, number, kept = labelled(scene, found, numpy.random.default_rng(seed))
        features.append(found["features"][kept].astype(numpy.float16))
        loudness.append(found["loudness"][kept])
        labels.append(label)
        sources.append(source)
        blows.append(numpy.where(number < 0, -1, 1000 * seed + number))
        backgrounds.append(numpy.full(len(label), scene.background, object))
    return {"features": numpy.concatenate(features), "label": numpy.concatenate(labels),
            "source": numpy.concatenate(sources), "background": numpy.concatenate(backgrounds),
            "blow": numpy.concatenate(blows),
            "loudness": numpy.concatenate(loudness)}
