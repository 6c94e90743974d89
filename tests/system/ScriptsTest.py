"""The commands at the root and what they stand on, from outside: messages, statuses, files."""

import os
import pathlib
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


if __name__ == "__main__":
    unittest.main()
