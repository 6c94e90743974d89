"""What the ears are trained and judged with: recordings in Debian packages, by name.

They are downloaded and unpacked into build/material, never installed and never part of this
repository. packages.sha256 names each package's version by its hash."""

import hashlib
import json
import pathlib
import re
import struct
import subprocess
import tempfile

import numpy
from scipy.signal import resample_poly

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDER = ROOT / "build/material"
HASHES = pathlib.Path(__file__).with_name("packages.sha256")
RATE = 16000    # Hz; the ears use nothing above 3.5 kHz
LONGEST = 90    # s of a file

BLOW = r"kick|bassdrum|bass drum|\bbd|[_-]bd|tom(?!b)|snare(?!.*verb)|\bsn_|conga|bongo|tabla_(ghe|tun|na|re)|cajon|" \
       r"tumba|quinto|timbale|taiko|djembe|darbuka|udu"
NO_BLOW = r"rim(?!shot)|stick|hat|crash|ride|cymb|splash|china|bell|clap|clave|wood|shaker|maraca|tambourine|click|block|" \
          r"cabasa|guiro|castanet|snap|agogo|triangle|tick|whistle|glass|hit|metal|perc"



class Corpus:
    """Some files of a package: `kind` is voice, music, sound or drum; `fold` is the one that is
    trained without it, None for what is kept for judging alone."""

    def __init__(self, name, package, kind, fold, wanted=r".", unwanted=r"^$"):
        self.name, self.package, self.kind, self.fold = name, package, kind, fold
        self.wanted, self.unwanted = wanted, unwanted


CORPORA = [
    Corpus("voices en", "asterisk-core-sounds-en-wav", "voice", 0, unwanted="silence|tone|beep"),
    Corpus("voices es", "asterisk-core-sounds-es-wav", "voice", 1, unwanted="silence|tone|beep"),
    Corpus("voices it", "asterisk-core-sounds-it-wav", "voice", 2, unwanted="silence|tone|beep"),
    Corpus("voices es-co", "asterisk-prompt-es-co", "voice", 3, unwanted="silence|tone|beep"),
    Corpus("voices it-menardi", "asterisk-prompt-it-menardi-wav", "voice", 4,
           unwanted="silence|tone|beep"),
    Corpus("voices ktuberling", "ktuberling-data", "voice", 0, r"sounds/", r"sounds/(fr|ru)/"),
    Corpus("voices klettres", "klettres-data", "voice", 1, r"klettres/", r"klettres/(fr|ru)/"),
    Corpus("voices hedgewars", "hedgewars-data", "voice", 3, r"voices/", r"_ru/"),
    Corpus("voices fillets", "fillets-ng-data", "voice", 4, r"/sound/.*/en/"),
    Corpus("voices espeak", "", "voice", 2),
    Corpus("music asc", "asc-music", "music", 0),
    Corpus("music etr", "extremetuxracer-data", "music", 1, r"/music/"),
    Corpus("music warzone", "warzone2100-music", "music", 2),
    Corpus("music xmoto", "xmoto-data", "music", 3, r"Musics/"),
    Corpus("music hedgewars", "hedgewars-data", "music", 4, r"/Music/"),
    Corpus("music fillets", "fillets-ng-data", "music", 0, r"/music/"),
    Corpus("music frozen-bubble", "frozen-bubble-data", "music", 1),
    Corpus("music lincity", "lincity-ng-data", "music", 3, r"/music/"),
    Corpus("sounds lincity", "lincity-ng-data", "sound", 0, r"/sounds/"),
    Corpus("sounds lugaru", "lugaru-data", "sound", 1, r"/Sounds/", r"music|[mM]enu"),
    Corpus("sounds desktop", "sound-theme-freedesktop", "sound", 2),
    Corpus("sounds hedgewars", "hedgewars-data", "sound", 3, r"Sounds/[^/]*$"),
    Corpus("sounds lmms", "lmms-common", "sound", 4, r"(basses|effects|instruments|latin|misc|shapes)/"),
    Corpus("drums gm-rock", "hydrogen-data", "drum", 0, r"GMRockKit/"),
    Corpus("drums tr808", "hydrogen-data", "drum", 1, r"TR808"),
    Corpus("drums red-zeppelin", "avldrums.lv2-soundfont", "drum", 2, r"sounds/sf2/Red_Zeppelin"),
    Corpus("drums lmms", "lmms-common", "drum", 3, r"drums/"),
    Corpus("drums sonic-pi", "sonic-pi-samples", "drum", 4, r"/(bd_|drum_|sn_|tabla_|elec_|perc_)"),
    Corpus("drums timgm", "timgm6mb-soundfont", "drum", 1),
    # For judging alone.
    Corpus("voices fr", "asterisk-core-sounds-fr-wav", "voice", None, unwanted="silence|tone|beep"),
    Corpus("voices ru", "asterisk-core-sounds-ru-wav", "voice", None, unwanted="silence|tone|beep"),
    Corpus("drums hydrogen", "hydrogen-drumkits", "drum", None, unwanted=r"rumpf_kit"),
]
FOLDS = 5


def packages():
    return sorted({corpus.package for corpus in CORPORA if corpus.package})


def fetch():
    """Downloads what is missing, and unpacks it."""
    debs = FOLDER / "deb"
    debs.mkdir(parents=True, exist_ok=True)
    missing = [name for name in packages() if not list(debs.glob(f"{name}_*.deb"))]
    if missing:
        subprocess.run(["apt-get", "download", *missing], cwd=debs, check=True)
    known = HASHES.read_text().split("\n") if HASHES.exists() else []
    for name in packages():
        deb = next(debs.glob(f"{name}_*.deb"))
        if known and hashOf(deb) not in known:
            print(f"{deb.name} is not what the checked-in weights were made from")
        if not (FOLDER / name).is_dir():
            subprocess.run(["dpkg-deb", "-x", deb, FOLDER / name], check=True)


def hashOf(deb):
    return f"{hashlib.sha256(deb.read_bytes()).hexdigest()}  {deb.name}"


def writeHashes():
    debs = [next((FOLDER / "deb").glob(f"{name}_*.deb")) for name in packages()]
    HASHES.write_text("".join(hashOf(deb) + "\n" for deb in debs))


def decode(paths):
    """16 kHz, one channel, of each file."""
    sounds = []
    for start in range(0, len(paths), 25):
        batch = paths[start:start + 25]
        with tempfile.TemporaryDirectory() as folder:
            command = ["ffmpeg", "-nostdin", "-v", "quiet", "-y", "-threads", "1"]
            for path in batch:
                command += ["-i", str(path)]
            for i in range(len(batch)):
                command += ["-map", f"{i}:a:0", "-t", str(LONGEST), "-ac", "1", "-ar", str(RATE),
                            "-f", "s16le", f"{folder}/{i}"]
            subprocess.run(command, check=False)
            for i, path in enumerate(batch):
                raw = pathlib.Path(folder, str(i))
                sound = numpy.fromfile(raw, numpy.int16) if raw.exists() else numpy.zeros(0, "h")
                sounds.append((str(path.name), sound))
    return sounds


def soundFont(path):
    """The recordings in a sound font, whatever it plays them as."""
    data = path.read_bytes()
    chunks = {}

    def walk(begin, end):
        while begin + 8 <= end:
            name, size = data[begin:begin + 4], struct.unpack("<I", data[begin + 4:begin + 8])[0]
            if name in (b"RIFF", b"LIST"):
                walk(begin + 12, begin + 8 + size)
            else:
                chunks[name] = (begin + 8, size)
            begin += 8 + size + (size & 1)

    walk(0, len(data))
    base = chunks[b"smpl"][0]
    place, size = chunks[b"shdr"]
    sounds = []
    for i in range(place, place + size - 46, 46):
        name = data[i:i + 20].split(b"\0")[0].decode("latin1")
        first, last, _, _, rate = struct.unpack("<5I", data[i + 20:i + 40])
        sound = numpy.frombuffer(data[base + 2 * first:base + 2 * last], "<i2") / 32768
        if re.search(BLOW + "|" + NO_BLOW, name, re.I) and len(sound) > 500:
            sounds.append((name, toShort(resample_poly(sound, RATE, rate))))
    return sounds


def toShort(sound):
    return numpy.clip(numpy.round(sound * 32767), -32768, 32767).astype(numpy.int16)


TEXT = "/usr/share/common-licenses/GPL-3"


def synthesised():
    """Men and women of two synthesisers read what every Debian has."""
    sentences = re.split(r"(?<=[.;:])\s+", pathlib.Path(TEXT).read_text())
    sentences = [" ".join(s.split()) for s in sentences if 20 < len(s) < 400]
    voices = [("espeak-ng", f"{language}+{variant}")
              for language in ("en", "de", "es", "it", "pl", "nl")
              for variant in ("m1", "m3", "m7", "f2", "m5", "m2")]
    voices += [("flite", name) for name in ("kal16", "rms", "awb", "slt")] * 4
    sounds = []
    with tempfile.TemporaryDirectory() as folder:
        for i, (program, voice) in enumerate(voices):
            text = " ".join(sentences[(5 * i + j) % len(sentences)] for j in range(5))
            path = pathlib.Path(folder, f"{i}.wav")
            if program == "flite":
                subprocess.run(["flite", "-voice", voice, "-t", text, "-o", path], check=True)
            else:
                subprocess.run(["espeak-ng", "-v", voice, "-s", str(130 + 10 * (i % 7)), "-w", path,
                                text], check=True)
            sounds += decode([path])
    return sounds


def build(corpus):
    """The corpus as one file of samples and an index."""
    index = FOLDER / "pcm" / (corpus.name.replace(" ", "-") + ".json")
    if index.exists():
        return
    index.parent.mkdir(exist_ok=True)
    if not corpus.package:
        sounds = synthesised()
    else:
        files = sorted(path for path in (FOLDER / corpus.package).rglob("*")
                       if re.search(corpus.wanted, str(path)) and
                       not re.search(corpus.unwanted, str(path)) and not path.is_symlink())
        sounds = decode([path for path in files if path.suffix.lower() in
                         (".wav", ".ogg", ".oga", ".opus", ".flac", ".mp3", ".gsm", ".aiff")])
        for path in files:
            if path.suffix == ".sf2":
                sounds += soundFont(path)
    sounds = [(name, sound) for name, sound in sounds
              if len(sound) > 400 and numpy.abs(sound).max() > 300]
    numpy.concatenate([sound for _, sound in sounds]).tofile(index.with_suffix(".s16"))
    index.write_text(json.dumps([(name, len(sound)) for name, sound in sounds]))
    print(f"{corpus.name}: {len(sounds)} recordings, "
          f"{sum(len(s) for _, s in sounds) / RATE / 60:.1f} minutes", flush=True)


def load(corpus):
    index = FOLDER / "pcm" / (corpus.name.replace(" ", "-") + ".json")
    samples = numpy.fromfile(index.with_suffix(".s16"), numpy.int16)
    sounds, place = [], 0
    for name, length in json.loads(index.read_text()):
        sounds.append((name, samples[place:place + length]))
        place += length
    return sounds


def isBlow(name):
    return bool(re.search(BLOW, name, re.I)) and not re.search(r"rim\b|stick|roll|verb", name, re.I)


def isNoBlow(name):
    return not re.search(BLOW, name, re.I) and bool(re.search(NO_BLOW, name, re.I))
