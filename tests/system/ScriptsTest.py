"""The commands at the root and what they stand on, from outside: messages, statuses, files."""

import os
import pathlib
import re
import struct
import subprocess
import tempfile
import unittest
import wave

ROOT = pathlib.Path(__file__).resolve().parents[2]


def run(*words, **more):
    return subprocess.run([str(word) for word in words], text=True, capture_output=True,
                          timeout=60, **more)


class Commands(unittest.TestCase):
    def testHelpIsPrintedAndUnknownOptionsAreRefused(self):
        for command in ("run", "test"):
            helped = run(ROOT / command, "--help", cwd="/")
            self.assertEqual((helped.returncode, helped.stderr), (0, ""))
            self.assertTrue(helped.stdout.startswith(f"usage: ./{command}"))
            self.assertEqual(run(ROOT / command, "--nonsense").returncode, 2)


class InstallPackages(unittest.TestCase):
    SCRIPT = ROOT / "scripts" / "install-packages"

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.folder.chmod(0o755)
        (self.folder / "packages").mkdir()
        (self.folder / "install-packages").write_bytes(self.SCRIPT.read_bytes())
        (self.folder / "install-packages").chmod(0o755)

    def install(self, *sets, **more):
        return run(self.folder / "install-packages", *sets, **more)

    def testEveryNamedPackageIsKnownAndHasItsReason(self):
        for file in (ROOT / "scripts" / "packages").iterdir():
            for line in file.read_text().splitlines():
                if line and not line.startswith("#"):
                    self.assertRegex(line, r"^[a-z0-9.+-]+ +# \S", file.name)

    def testAnUnknownSetIsAnError(self):
        done = self.install("nonsense")
        self.assertEqual(done.returncode, 2)
        self.assertIn('"nonsense"', done.stderr)

    def testSaysNothingWhenNothingIsMissing(self):
        (self.folder / "packages" / "some").write_text("dpkg  # always there\n\n# a comment\n")
        done = self.install("some")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    @unittest.skipUnless(os.getuid() == 0, "only root can become somebody without sudo")
    def testWithoutRootItPrintsTheCommandToRun(self):
        (self.folder / "packages" / "some").write_text("dpkg  # there\nno-such-package  # not\n")
        done = self.install("some", user="nobody", group="nogroup", extra_groups=[],
                            stdin=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 1)
        self.assertIn("    apt-get install --no-install-recommends no-such-package\n", done.stderr)


class MakeRecording(unittest.TestCase):
    def testHasAsManyKnocksAsAskedFor(self):
        with tempfile.TemporaryDirectory() as folder:
            path = f"{folder}/knocks.wav"
            done = run(ROOT / "scripts" / "make-recording", "--count", "3", "--gap", "1", path)
            self.assertEqual(done.returncode, 0, done.stderr)
            with wave.open(path) as file:
                self.assertEqual((file.getnchannels(), file.getsampwidth()), (1, 2))
                samples = memoryview(file.readframes(file.getnframes())).cast("h")
                rate = file.getframerate()
        loud = [n / rate for n, sample in enumerate(samples) if abs(sample) > 8000]
        starts = [t for n, t in enumerate(loud) if n == 0 or t - loud[n - 1] > 0.5]
        self.assertEqual([round(t) for t in starts], [2, 3, 4])
        self.assertLess(max(map(abs, samples[:2 * rate])), 300)


class MacIcon(unittest.TestCase):
    KEPT = ROOT / "Resources" / "Bonkora.icns"

    def pictures(self, path):
        """Kind -> PNG of every picture in the file."""
        content = path.read_bytes()
        self.assertEqual(struct.unpack(">4sI", content[:8]), (b"icns", len(content)))
        found, place = {}, 8
        while place < len(content):
            kind, length = struct.unpack(">4sI", content[place:place + 8])
            found[kind] = content[place + 8:place + length]
            place += length
        self.assertEqual(place, len(content))
        return found

    def testTheKeptOneShowsTheDrawingInEverySize(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        fresh = folder / "fresh.icns"
        self.assertEqual(run(ROOT / "scripts" / "make-icns", fresh).returncode, 0)
        kept, made = self.pictures(self.KEPT), self.pictures(fresh)
        self.assertEqual(kept.keys(), made.keys())
        for kind in kept:
            (folder / "kept.png").write_bytes(kept[kind])
            (folder / "made.png").write_bytes(made[kind])
            # Not the same bytes: another version of the renderer smooths edges otherwise.
            compared = run("compare", "-metric", "RMSE", folder / "kept.png",
                           folder / "made.png", "null:")
            difference = re.search(r"\(([0-9.e-]+)\)", compared.stderr)
            self.assertLess(float(difference[1]), 0.01, kind)

    def testItHasThePicturesOfBothKindsOfDisplay(self):
        sizes = {kind: struct.unpack(">II", picture[16:24])
                 for kind, picture in self.pictures(self.KEPT).items()}
        self.assertEqual(sizes, {kind: (size, size) for kind, size in {
            b"ic07": 128, b"ic08": 256, b"ic09": 512, b"ic10": 1024,
            b"ic11": 32, b"ic12": 64, b"ic13": 256, b"ic14": 512}.items()})


if __name__ == "__main__":
    unittest.main()
