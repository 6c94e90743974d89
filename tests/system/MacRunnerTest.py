"""What a Mac user sees: the real application and the real detector, between them a stand-in for the
runner of that system."""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

import claims
import desktop

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])
STAND_IN = desktop.ROOT / "tests" / "support" / "mac-runner"
KNOCKS = 3


@unittest.skipIf(os.path.exists("/usr/bin/osascript"), "this system has a runner of its own")
class MacRunner(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.bundle = self.folder / "Bonkora.app"
        shutil.copytree(BUNDLE, self.bundle, symlinks=True)
        self.helpers = self.bundle / "Contents" / "Helpers"
        shutil.copy(STAND_IN, self.helpers / "osascript")
        recording = self.folder / "knocks.wav"
        subprocess.run([desktop.ROOT / "scripts" / "make-recording", "--count", str(KNOCKS),
                        "--lead", "1", "--gap", "1", "--tail", "120", recording], check=True)
        settings = pathlib.Path(os.environ["XDG_CONFIG_HOME"], "Bonkora", "spank.conf")
        settings.parent.mkdir(exist_ok=True)
        settings.write_text(f"sensor = file:{recording}\n")
        self.app = self.enterContext(desktop.Application(
            self.bundle, self.folder / "console", self.folder / "errors"))
        self.app.openPanel()

    def detectors(self):
        spank = str(self.bundle / "Contents/Resources/spank")
        return [pid for pid, (_, state, words) in desktop.processes().items()
                if words[:1] == [spank] and state != "Z"]

    def start(self):
        self.app.press("push button", "Start")
        self.app.find("push button", "Stop")
        return desktop.waitFor(self.detectors, "a detector")[0]

    def waitForStatus(self, text):
        desktop.waitFor(lambda: text in self.app.labels(), f"the status {text!r}")

    def testARunCountsOnceAndOnlyWhenTheDetectorHasEnded(self):
        # Between carriage returns the lines are one line for the application, and no JSON: whatever
        # the number of knocks in it, it counts once.
        detector = self.start()
        withheld = self.helpers / "withheld"
        desktop.waitFor(lambda: withheld.read_text().count('"slap"') == KNOCKS, "every knock", 60)
        self.assertIn("0", self.app.labels())
        self.assertFalse([line for line in self.app.lines() if line.startswith("📋 spank: ")])
        os.kill(detector, signal.SIGTERM)
        self.app.waitForLine("⏹ Spank process ended with code: 0")
        console = self.app.console.read_bytes().decode()    # lines() would take these for line ends
        told, = [line for line in console.split("\n") if line.startswith("📋 spank: ")]
        self.assertEqual(told.count('"slap"'), KNOCKS)
        self.waitForStatus("Stopped")
        desktop.waitFor(lambda: "1" in self.app.labels(), "the count in the panel")

    def testStopReadsAsAnErrorAndLeavesNoDetector(self):
        self.start()
        self.app.press("push button", "Stop")
        self.waitForStatus("Error (code: 15)")
        self.app.find("push button", "Start")
        desktop.waitFor(lambda: not self.detectors(), "the end of the detector")

    def testACancelledPromptIsAnErrorWithoutADetector(self):
        (self.helpers / "cancel").touch()
        self.app.press("push button", "Start")
        self.waitForStatus("Error (code: 1)")
        self.app.find("push button", "Start")
        self.assertEqual(self.detectors(), [])


if __name__ == "__main__":
    claims.main()
