"""What a Mac user sees: the real application and the real detector, between them a stand-in for the
runner of that system."""

import os
import shutil
import signal
import unittest

import claims
import desktop
from road import BUNDLE, RoadCase

STAND_IN = desktop.ROOT / "tests" / "support" / "mac-runner"


@unittest.skipIf(os.path.exists("/usr/bin/osascript"), "this system has a runner of its own")
class MacRunner(RoadCase):
    KNOCKS = 3

    def bundleIn(self, folder):
        bundle = folder / "Bonkora.app"
        shutil.copytree(BUNDLE, bundle, symlinks=True)
        self.helpers = bundle / "Contents" / "Helpers"
        shutil.copy(STAND_IN, self.helpers / "osascript")
        return bundle

    def detectors(self):
        spank = str(self.bundle / "Contents/Resources/spank")
        return [pid for pid, (_, state, words) in desktop.processes().items()
                if words[:1] == [spank] and state != "Z"]

    def start(self):
        self.pressStart()
        return desktop.waitFor(self.detectors, "a detector")[0]

    def waitForStatus(self, text):
        desktop.waitFor(lambda: text in self.app.labels(), f"the status {text!r}")

    def testARunCountsOnceAndOnlyWhenTheDetectorHasEnded(self):
        # Between carriage returns the lines are one line for the application, and no JSON: whatever
        # the number of knocks in it, it counts once.
        detector = self.start()
        withheld = self.helpers / "withheld"
        desktop.waitFor(lambda: withheld.read_text().count('"slap"') == self.KNOCKS, "every knock", 60)
        self.assertIn("0", self.app.labels())
        self.assertFalse([line for line in self.app.lines() if line.startswith("📋 spank: ")])
        os.kill(detector, signal.SIGTERM)
        self.app.waitForLine("⏹ Spank process ended with code: 0")
        console = self.app.console.read_bytes().decode()    # lines() would take these for line ends
        told, = [line for line in console.split("\n") if line.startswith("📋 spank: ")]
        self.assertEqual(told.count('"slap"'), self.KNOCKS)
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
