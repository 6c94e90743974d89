"""The order of things: candidates, training, judging."""

import hashlib
import pickle

import numpy

from . import judge, material, network, pool, scenes

CHUNKS = 24     # of scenes
WATCHING = 6    # of them are not trained with
CHUNK = 15      # scenes
SEED = 1
EVIDENCE = material.ROOT / "detector/detection/evidence.inc"
RESULTS = material.ROOT / "build/ears"


def corpora(kinds, fold=None):
    """Those to train with, without the ones that `fold` leaves out."""
    return [c for c in material.CORPORA
            if c.fold is not None and c.fold != fold and c.kind in kinds]


def gatherAll():
    """The candidates of the scenes to train with, each chunk's kept in a file of its own."""
    drums = corpora(("drum",))
    maker = None
    parts = {}
    for chunk in range(CHUNKS):
        path = material.FOLDER / f"pool-{chunk}.pk"
        if not path.exists():
            maker = maker or scenes.Maker(corpora(("voice", "music", "sound")), drums, drums)
            part = pool.gather(maker, range(chunk * CHUNK, (chunk + 1) * CHUNK))
            path.write_bytes(pickle.dumps(part))
            print(f"chunk {chunk}: {len(part['label'])} candidates", flush=True)
        parts[path.name] = pickle.loads(path.read_bytes())
    used = [parts[name] for name in sorted(parts)][:-WATCHING]
    return {key: numpy.concatenate([part[key] for part in used]) for key in used[0]}


def withoutFold(data, fold):
    left = [c.name for c in material.CORPORA if c.fold == fold]
    kept = ~numpy.isin(data["background"], left) & ~numpy.isin(data["source"], left)
    return {key: values[kept] for key, values in data.items()}


def trainOn(data, name):
    path = RESULTS / f"network-{name}.pk"
    if not path.exists():
        path.parent.mkdir(exist_ok=True)
        print(f"network {name}: {len(data['label'])} candidates", flush=True)
        trained = network.trained(data["features"], data["label"], SEED)
        path.write_bytes(pickle.dumps(trained))
    return pickle.loads(path.read_bytes())


def train():
    data = gatherAll()
    write(trainOn(data, "all"), int((data["label"] == 1).sum()), int((data["label"] == 0).sum()))


def write(trained, blows, others):
    """The weights as 16-bit integers, with what they come from."""
    flat = trained.flat()
    unit = float(numpy.abs(flat).max()) / 32767
    whole = numpy.round(flat / unit).astype(int)
    packages = hashlib.sha256(material.HASHES.read_bytes()).hexdigest()
    lines = [
        "// What tells a blow from everything else. Made by scripts/train-ears; do not edit.",
        f"// From {blows} candidates of blows and {others} others in "
        f"{(CHUNKS - WATCHING) * CHUNK * scenes.SECONDS / 3600:.1f} hours of scenes, seed {SEED};",
        "// recordings: scripts/ears/packages.sha256, whose own sum begins with",
        f"// {packages[:32]}.",
        f"constexpr float trainedQuiet = {QUIET:.2f}F;",
        f"constexpr float trainedLoud = {LOUD:.2f}F;",
        f"constexpr float weightUnit = {unit:.9e}F;",
        f"constexpr std::int16_t trainedWeights[{len(whole)}] = {{"]
    for start in range(0, len(whole), 16):
        lines.append(",".join(str(w) for w in whole[start:start + 16]) + ",")
    EVIDENCE.write_text("\n".join(lines) + "};\n")
    numpy.concatenate([whole * unit, [QUIET, LOUD]]).astype("f4").tofile(RESULTS / "weights.f32")


# What the score must exceed where it is quiet and where it is loud (see thresholdAt() in
# detector/detection/Tuning.cpp): chosen from the table in docs/detection.md.
QUIET, LOUD = 0.0, 3.0


def thresholdAt(loudness, quiet, loud):
    level = 20 * numpy.log10(numpy.maximum(loudness, 1e-6))
    return quiet + (loud - quiet) * numpy.clip((level + 52) / 32, 0, 1)


class Heard:
    """Scenes as the ears' candidates with their scores: what they amount to at any threshold."""

    def __init__(self, trained, maker, seeds, **options):
        ears = pool.Ears()
        self.scenes = []
        for seed in seeds:
            scene = maker.scene(seed, plain=True, gap=(1.0, 2.5), **options)
            found = ears.hear(scene.samples, judge.THRESHOLD)
            scene.samples = None
            self.scenes.append((scene, found[["time", "decided", "amplitude", "loudness"]].copy(),
                                trained.scores(found["features"])))

    def tally(self, quiet, loud):
        total = judge.Tally()
        for scene, found, scores in self.scenes:
            passed = found[scores > thresholdAt(found["loudness"], quiet, loud)]
            knocks, free = [], -1.0
            for candidate in passed:
                if candidate["time"] >= free:
                    knocks.append(candidate)
                    free = candidate["time"] + 0.75
            total.add(judge.compare(scene, numpy.array(knocks, passed.dtype)))
        return total


def measure(trained, maker, backgrounds, blowKinds, hours, blowScenes, seed):
    """{(background, level, blows): Heard}"""
    result = {}
    for background, levels in backgrounds.items():
        for level in levels:
            options = {"background": background, "level": level}
            result[background, level, "none"] = Heard(
                trained, maker, range(seed, seed + int(hours * 3600 / scenes.SECONDS)),
                blows="none", **options)
            for blows in blowKinds:
                result[background, level, blows] = Heard(
                    trained, maker, range(seed + 5000, seed + 5000 + blowScenes), blows=blows,
                    **options)
            print(background, level, flush=True)
    return result


BOTH = ("nominal", "loud")
ALONE = {"quiet": ("any",), "fan": ("any",), "typing": ("any",), "rumble": ("any",)}


def judgeFold(data, fold, hours=0.25, blowScenes=8):
    path = RESULTS / f"fold-{fold}.pk"
    if not path.exists():
        trained = trainOn(withoutFold(data, fold), f"without-{fold}")
        left = [c for c in material.CORPORA if c.fold == fold]
        drums = [c for c in left if c.kind == "drum"]
        maker = scenes.Maker([c for c in left if c.kind != "drum"], drums)
        seed = 1000000 * (fold + 1)
        heard = measure(trained, maker, {c.name: BOTH for c in left if c.kind in ("voice", "music")},
                        ["model"] + [c.name for c in drums], hours, blowScenes, seed)
        heard |= measure(trained, maker, ALONE, ["model"] + [c.name for c in drums], hours,
                         blowScenes, seed)
        path.write_bytes(pickle.dumps(heard))
    return pickle.loads(path.read_bytes())


def judgeKept(hours=1.0, blowScenes=20):
    """What nobody trained with: the checked-in weights."""
    path = RESULTS / "kept.pk"
    if not path.exists():
        trained = pickle.loads((RESULTS / "network-all.pk").read_bytes())
        kept = [c for c in material.CORPORA if c.fold is None]
        drums = [c for c in kept if c.kind == "drum"]
        maker = scenes.Maker([c for c in kept if c.kind != "drum"], drums)
        heard = measure(trained, maker, {c.name: BOTH for c in kept if c.kind == "voice"} | ALONE,
                        ["model"] + [c.name for c in drums], hours, blowScenes, 9000000)
        path.write_bytes(pickle.dumps(heard))
    return pickle.loads(path.read_bytes())


def judgeAll():
    data = gatherAll()
    for fold in range(material.FOLDS):
        judgeFold(data, fold)
    judgeKept()
    from . import report
    report.write()
