"""Scenes: half a minute of what a laptop's microphone hears, with blows whose time and strength are
known. Every scene follows from its seed."""

import dataclasses

import numpy
from scipy.signal import butter, fftconvolve, lfilter, sosfilt

from . import material

RATE = material.RATE
SECONDS = 30.0
COUNT = int(RATE * SECONDS)
# What the detector measures of a blow: see detector/detection/Tuning.cpp.
STRENGTH = numpy.concatenate([butter(2, 60, "high", fs=RATE, output="sos"),
                              butter(2, 350, "low", fs=RATE, output="sos")])


@dataclasses.dataclass
class Blow:
    time: float
    amplitude: float    # by itself, as the detector measures it
    force: float
    source: str         # corpus, or kind of model


@dataclasses.dataclass
class Scene:
    samples: numpy.ndarray
    blows: list
    background: str     # corpus, or kind of model
    level: str


class Maker:
    def __init__(self, corpora, blowCorpora, otherCorpora=()):
        """`corpora`: voices, music, sounds to play; `blowCorpora`: drums that count, `otherCorpora`
        those of whose recordings the rest, which does not count, is heard now and then."""
        self.sounds = {c.name: (c.kind, material.load(c)) for c in corpora}
        self.blows, self.others = {}, {}
        for c in set(blowCorpora) | set(otherCorpora):
            recordings = material.load(c)
            yes = [s for n, s in recordings if material.isBlow(n)]
            no = [s for n, s in recordings if material.isNoBlow(n)]
            if c in blowCorpora:
                self.blows[c.name] = [fromOnset(s) for s in yes]
            if c in otherCorpora:
                self.others[c.name] = [fromOnset(s) for s in no]

    def scene(self, seed, background=None, level=None, blows=None, gap=(0.45, 1.5), plain=False):
        """`background`: a corpus, or quiet, fan, typing, rumble; `level`: nominal, loud, any;
        `blows`: model, a corpus, any or none; `plain`: no gain control, clipping or suppression."""
        r = numpy.random.default_rng(seed)
        background = background or self.drawBackground(r)
        level = level or r.choice(["nominal", "loud", "any"], p=[0.35, 0.4, 0.25])
        blows = blows if blows is not None else r.choice(["any", "none"], p=[0.6, 0.4])
        sound = room(r)
        if background in self.sounds:
            sound += atLevel(self.play(background, r), level, r)
        elif background == "fan":
            sound += fan(r)
        elif background == "typing":
            sound += typing(r)
        elif background == "rumble":
            sound += rumble(r)
        if not plain and self.others and r.random() < 0.25:
            sound += self.strew(r)
        if not plain and background != "typing" and r.random() < 0.15:
            sound += typing(r)
        shape = microphone(r)
        sound = sosfilt(shape, sound)
        truth = []
        t = 0.5 + r.random()
        while blows != "none" and t < SECONDS - 0.7:
            truth.append(self.addBlow(sound, t, blows, shape, r))
            t += r.uniform(*gap)
        if not plain:
            sound = processed(sound, r)
        return Scene(material.toShort(sound), truth, background, level)

    def drawBackground(self, r):
        kind = r.choice(["voice", "music", "sound", "quiet", "fan", "typing", "rumble"],
                        p=[0.5, 0.2, 0.1, 0.05, 0.05, 0.05, 0.05])
        names = [n for n, (k, _) in self.sounds.items() if k == kind]
        return str(r.choice(names)) if names else str(kind)

    def play(self, name, r):
        """The corpus' recordings one after the other, in some room, fast or slow: voices become
        higher and lower, women's like men's."""
        kind, recordings = self.sounds[name]
        sound = numpy.zeros(COUNT)
        place = int(r.uniform(0, RATE))
        while place < COUNT:
            recording = recordings[r.integers(len(recordings))][1]
            if len(recording) > 15 * RATE:
                begin = r.integers(len(recording) - 10 * RATE)
                recording = recording[begin:begin + 10 * RATE]
            recording = atSpeed(recording, numpy.exp(r.uniform(-0.42, 0.22)) if kind == "voice" else
                                numpy.exp(r.uniform(-0.15, 0.15)))
            recording = recording * r.uniform(0.7, 1.0)
            end = min(COUNT, place + len(recording))
            sound[place:end] += recording[:end - place]
            place = end + int(RATE * r.uniform(0.05, 0.8 if kind != "sound" else 1.5))
        if r.random() < 0.7:
            sound = inRoom(sound, r)
        if kind != "voice" and r.random() < 0.6 or r.random() < 0.25:    # a laptop's loudspeaker
            sound = sosfilt(butter(2, r.uniform(120, 320), "high", fs=RATE, output="sos"), sound)
        return sound

    def strew(self, r):
        """Claps, clicks, sticks, cymbals in the room."""
        sound = numpy.zeros(COUNT)
        for _ in range(r.integers(2, 15)):
            one = self.others[r.choice(list(self.others))]
            if one:
                recording = atSpeed(one[r.integers(len(one))], numpy.exp(r.uniform(-0.2, 0.3)))
                recording = recording / (numpy.abs(recording).max() + 1e-9)
                add(sound, recording, r.uniform(0, SECONDS), numpy.exp(r.uniform(-4.0, -0.6)))
        return inRoom(sound, r)

    def addBlow(self, sound, time, wanted, shape, r):
        names = [n for n in self.blows if self.blows[n]]
        if wanted == "any":
            wanted = "model" if r.random() < 0.5 or not names else str(r.choice(names))
        if wanted in self.blows:
            one = self.blows[wanted]
            blow = atSpeed(one[r.integers(len(one))], numpy.exp(r.uniform(-0.3, 0.3)))[:RATE // 2]
            source = wanted
        else:
            blow, source = model(r, None if wanted == "model" else wanted)
        blow = sosfilt(shape, blow)
        strength = numpy.abs(sosfilt(STRENGTH, blow)).max() + 1e-9
        amplitude = float(numpy.exp(r.uniform(numpy.log(0.04), numpy.log(1.2))))
        gain = min(amplitude / strength, 3.0 / (numpy.abs(blow).max() + 1e-9))
        add(sound, blow, time, gain)
        return Blow(time, gain * strength, gain, source)


def add(sound, one, time, gain):
    place = int(time * RATE)
    end = min(len(sound), place + len(one))
    if place < end:
        sound[place:end] += gain * one[:end - place]


def atSpeed(recording, speed):
    places = numpy.arange(0, len(recording) - 1, speed)
    return numpy.interp(places, numpy.arange(len(recording)), recording) / 32768.0


def fromOnset(recording):
    """From 3 ms before the first value above a tenth of the peak."""
    size = numpy.abs(recording.astype(numpy.int32))
    first = int(numpy.argmax(size > 0.1 * size[:RATE].max()))
    return recording[max(0, first - 3 * RATE // 1000):][:RATE]


def pink(r, level):
    white = r.standard_normal(COUNT)
    sound = lfilter([0.05, -0.0959, 0.0506, -0.0044], [1, -2.4949, 2.0172, -0.5222], white)
    return level * sound / (sound.std() + 1e-12)


def room(r):
    return pink(r, numpy.exp(r.uniform(numpy.log(0.00015), numpy.log(0.004))))


def fan(r):
    sound = pink(r, numpy.exp(r.uniform(numpy.log(0.002), numpy.log(0.03))))
    t = numpy.arange(COUNT) / RATE
    blades = r.uniform(80, 420)
    for harmonic in (1, 2, 3, 4):
        level = numpy.exp(r.uniform(numpy.log(0.0003), numpy.log(0.01)))
        sway = 1 + 0.3 * numpy.sin(2 * numpy.pi * r.uniform(0.1, 0.6) * t)
        sound += level * sway * numpy.sin(2 * numpy.pi * (blades * harmonic * t + r.random()))
    return sound


def ring(r, hertz, fade):
    t = numpy.arange(int(6 * fade * RATE) + 1) / RATE
    return numpy.exp(-t / fade) * numpy.sin(2 * numpy.pi * (hertz * t + r.random()))


def logUniform(r, low, high):
    return float(numpy.exp(r.uniform(numpy.log(low), numpy.log(high))))


def typing(r):
    """Keys go down and come back: mostly click, a little of the case below it."""
    sound = numpy.zeros(COUNT)
    usual = logUniform(r, 0.01, 0.15)
    thud = r.uniform(0.05, 0.5)
    keys = [[(logUniform(r, 600, 6500), logUniform(r, 0.001, 0.006)) for _ in range(4)]
            for _ in range(5)]
    t = r.random()
    while t < SECONDS:
        level = usual * numpy.exp(0.35 * r.standard_normal())
        for when, part in ((t, 1.0), (t + r.uniform(0.05, 0.12), 0.5)):
            for hertz, fade in keys[r.integers(5)]:
                add(sound, ring(r, hertz * r.uniform(0.95, 1.05), fade),
                    when + r.uniform(0, 0.004), part * level * r.uniform(0.2, 0.6))
            add(sound, ring(r, r.uniform(100, 300), r.uniform(0.006, 0.02)), when,
                part * level * thud * r.uniform(0.5, 1.0))
        t += r.uniform(0.5, 3.0) if r.random() < 0.06 else r.uniform(0.06, 0.3)
    return sound


def rumble(r):
    """Steps, doors far off, a table that somebody leans on: low and slow."""
    sound = numpy.zeros(COUNT)
    t = r.uniform(0, 3)
    while t < SECONDS:
        one = ring(r, r.uniform(12, 70), r.uniform(0.05, 0.3))
        rise = numpy.minimum(1.0, numpy.arange(len(one)) / RATE / r.uniform(0.015, 0.05))
        add(sound, one * rise, t, logUniform(r, 0.01, 0.3))
        t += r.uniform(0.3, 5.0)
    return sound


def model(r, kind=None):
    """A hand's blow: a push that sets case and table swinging in damped modes; a flat hand's also
    slaps the air."""
    kind = kind or str(r.choice(["knuckle", "palm", "fist", "finger"]))
    place = r.integers(3)      # lid, palm rest, desk
    push = {"knuckle": (0.0008, 0.003), "palm": (0.002, 0.007), "fist": (0.003, 0.008),
            "finger": (0.001, 0.0035)}[kind]
    lowest = [(80, 200), (70, 160), (45, 120)][place]
    fade = [(0.012, 0.05), (0.008, 0.03), (0.02, 0.07)][place]
    fine = 4 * RATE
    count = int(0.3 * fine)
    length = int(r.uniform(*push) * fine) + 1
    phase = r.random()         # no blow waits for a sampling instant
    force = numpy.zeros(count)
    force[:length + 1] = numpy.sin(numpy.pi * numpy.clip((numpy.arange(length + 1) + phase) /
                                                         (length + 1), 0, 1)) / length
    hertz = r.uniform(*lowest)
    sound = numpy.zeros(count)
    strength = 1.0
    modes = r.integers(4, 8)
    for i in range(modes):
        fading = r.uniform(*fade) * (lowest[0] / hertz) ** r.uniform(0.4, 1.0)
        radius = numpy.exp(-1 / (fading * fine))
        turn = 2 * numpy.pi * hertz / fine
        sound += strength * r.uniform(0.4, 1.0) * lfilter(
            [numpy.sin(turn)], [1, -2 * radius * numpy.cos(turn), radius * radius], force)
        hertz *= r.uniform(1.4, 2.6)
        strength *= r.uniform(0.35, 0.95)
        if hertz > 7000:
            break
    sound = sound[::4]
    if kind in ("palm", "finger") or r.random() < 0.3:
        slap = r.standard_normal(len(sound)) * numpy.exp(-numpy.arange(len(sound)) / RATE /
                                                         r.uniform(0.0015, 0.008))
        slap = sosfilt(butter(2, [r.uniform(200, 900), r.uniform(1500, 6500)], "band", fs=RATE,
                              output="sos"), slap)
        sound += slap * numpy.abs(sound).max() * r.uniform(0.05, 0.8) / numpy.abs(slap).max()
    if r.random() < 0.5:
        sound = inRoom(sound, r, wet=0.25)
    return sound, "model " + kind


def inRoom(sound, r, wet=1.0):
    seconds = logUniform(r, 0.08, 0.7)
    count = int(min(seconds, 0.4) * RATE)
    tail = r.standard_normal(count) * numpy.exp(-6.9 * numpy.arange(count) / RATE / seconds)
    tail[:int(r.uniform(0.001, 0.01) * RATE)] = 0
    tail *= wet * logUniform(r, 0.1, 1.5) / (numpy.sqrt((tail ** 2).sum()) + 1e-9)
    tail[0] = 1.0
    return fftconvolve(sound, tail)[:len(sound)]


def microphone(r):
    """Its low end, its tilt and a resonance, as a filter in sections."""
    sections = [butter(1 + r.integers(2), r.uniform(20, 130), "high", fs=RATE, output="sos"),
                shelf(r.uniform(800, 3000), r.uniform(-7, 7))]
    for _ in range(r.integers(0, 3)):
        sections.append(peak(logUniform(r, 120, 5000), r.uniform(-7, 7), r.uniform(0.7, 3)))
    return numpy.concatenate(sections)


def shelf(hertz, decibels):
    a = 10 ** (decibels / 40)
    w = 2 * numpy.pi * hertz / RATE
    c, s = numpy.cos(w), numpy.sin(w) / numpy.sqrt(2) * 2 * numpy.sqrt(a)
    b = [a * (a + 1 + (a - 1) * c + s), -2 * a * (a - 1 + (a + 1) * c), a * (a + 1 + (a - 1) * c - s)]
    d = [a + 1 - (a - 1) * c + s, 2 * (a - 1 - (a + 1) * c), a + 1 - (a - 1) * c - s]
    return numpy.array([b + d]) / d[0]


def peak(hertz, decibels, q):
    a = 10 ** (decibels / 40)
    w = 2 * numpy.pi * hertz / RATE
    alpha, c = numpy.sin(w) / (2 * q), numpy.cos(w)
    d = [1 + alpha / a, -2 * c, 1 - alpha / a]
    return numpy.array([[1 + alpha * a, -2 * c, 1 - alpha * a] + d]) / d[0]


def atLevel(sound, level, r):
    """nominal: 26 dB below full scale while it sounds; loud: peaks of 0.7; any: between 46 and 9
    dB below."""
    if level == "loud":
        return sound * 0.7 / (numpy.abs(sound).max() + 1e-9)
    size = sound ** 2
    active = size[size > 1e-4 * size.max()] if size.max() > 0 else size
    rms = numpy.sqrt(active.mean()) if len(active) else 1.0
    decibels = -26.0 if level == "nominal" else r.uniform(-46, -9)
    return sound * 10 ** (decibels / 20) / (rms + 1e-9)


def processed(sound, r):
    """What laptops do to it: gain control, suppression of steady noise, clipping."""
    if r.random() < 0.25:
        seconds = r.uniform(0.1, 1.0)
        power = lfilter([1 / (seconds * RATE)], [1, 1 / (seconds * RATE) - 1], sound ** 2) + 1e-7
        sound = sound * numpy.clip(0.1 / numpy.sqrt(power), 0.5, 4.0) ** r.uniform(0.2, 0.8)
    if r.random() < 0.15:
        size = 256
        window = numpy.hanning(size + 1)[:-1]
        blocks = numpy.lib.stride_tricks.sliding_window_view(sound, size)[::size // 2]
        spectrum = numpy.fft.rfft(blocks * window)
        strength = numpy.abs(spectrum)
        floor = numpy.quantile(strength, 0.2, axis=0) * r.uniform(1.5, 3.0)
        spectrum *= numpy.maximum(1 - (floor / (strength + 1e-9)) ** 2, r.uniform(0.05, 0.3))
        blocks = numpy.fft.irfft(spectrum)
        cleaned = numpy.zeros_like(sound)
        for i in range(2):
            part = blocks[i::2].ravel()
            cleaned[i * size // 2:i * size // 2 + len(part)] += part
        sound = cleaned
    if r.random() < 0.15:
        sound = sound * r.uniform(1.2, 3.0)
    return sound
