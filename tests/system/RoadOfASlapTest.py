"""The road of a slap from end to end: real application, runner, detector and tray host.

The detector plays a recording of real knocks through its "file:" sensor.
"""

import os
import signal
import time
import unittest

import desktop
from road import BUNDLE, RoadCase

GONE = 0.5    # seconds after which nothing of the runner may live any more
SLACK = 1.0   # what a busy machine may add


def ours():
    """The live processes that were started from the application folder, by their command lines."""
    return {pid: words for pid, (_, state, words) in desktop.processes().items()
            if state != "Z" and any(str(BUNDLE) in word for word in words)}


class RoadOfASlap(RoadCase):
    def start(self):
        """Presses Start and returns how many console lines there were before."""
        before = len(self.app.lines())
        self.pressStart()
        self.app.waitForLine("✅ Spank ready", after=before)
        return before

    def stop(self):
        before = len(self.app.lines())
        self.app.press("push button", "Stop")
        self.app.waitForLine("⏹ Spank stopped", after=before)
        desktop.waitFor(lambda: not desktop.below(self.app.pid), "no process below", GONE + SLACK)
        self.app.waitForLine("⏹ Spank process ended with code: 0", after=before)
        self.app.find("push button", "Start")

    def testEveryKnockIsCountedAndShownAndNothingIsLeft(self):
        # What the first start opens for good (the session bus, fonts) is not a leak.
        self.start()
        self.stop()
        descriptors = desktop.descriptors(self.app.pid)
        counted = sum(line.startswith("👋") for line in self.app.lines())

        before = self.start()
        runner, = [words for words in desktop.below(self.app.pid).values()
                   if words[0].endswith("osascript")]
        self.assertEqual(runner[1:], [
            "-e", f'do shell script "\\"{BUNDLE}/Contents/Resources/spank\\" \\"--stdio\\" '
            '\\"--cooldown\\" \\"750\\" \\"--min-amplitude\\" \\"0.050\\" \\"--volume-scaling\\"" '
            'with administrator privileges'])
        self.app.waitForLine(f"👋 Slap #{counted + self.KNOCKS} ", after=before)
        slaps = [line for line in self.app.lines()[before:] if line.startswith("👋")]
        self.assertEqual(len(slaps), self.KNOCKS)
        desktop.waitFor(lambda: str(counted + self.KNOCKS) in self.app.labels(), "the count in the panel")
        amplitude = float(slaps[-1].partition("amplitude: ")[2].rstrip(")"))
        self.app.find("label", f"{amplitude:.4f}")
        self.app.find("label", "Listening for slaps...")

        self.stop()
        self.app.find("label", "Stopped")
        desktop.waitFor(lambda: sorted(desktop.descriptors(self.app.pid).values())
                        == sorted(descriptors.values()), "no other descriptor than before")
        self.assertEqual(desktop.zombies(self.app.pid), [])

        self.start()
        self.app.waitForLine(f"👋 Slap #{counted + self.KNOCKS + 1} ")
        self.assertEqual(self.app.end(signal.SIGTERM), 0)
        desktop.waitFor(lambda: not ours(), "no process of ours any more", GONE + SLACK)
        self.assertNotIn("⏹ Spank stopped", self.app.lines()[-2:])
        self.assertEqual(self.app.complaints(), [])

    def testARunnerThatIsKilledTakesTheDetectorWithIt(self):
        self.start()
        runner, = [pid for pid, words in desktop.below(self.app.pid).items()
                   if words[0].endswith("osascript")]
        os.kill(runner, signal.SIGKILL)
        desktop.waitFor(lambda: list(ours()) == [self.app.pid], "the detector is gone", GONE + SLACK)
        self.app.find("label", "Error (code: 9)")
        self.app.find("push button", "Start")
        self.start()
        self.stop()

    def testAnApplicationThatIsKilledTakesTheDetectorWithIt(self):
        self.start()
        self.app.process.kill()
        self.app.process.wait()
        desktop.waitFor(lambda: not ours(), "no process of ours any more", GONE + SLACK)

    def testQuitEndsApplicationAndDetectorWithoutTheStop(self):
        self.start()
        pressed = time.monotonic()
        self.app.press("push button", "Quit")
        self.assertEqual(self.app.process.wait(desktop.PATIENCE), 0)
        self.assertGreaterEqual(time.monotonic() - pressed, 0.3)
        self.assertNotIn("⏹ Spank stopped", self.app.lines())
        desktop.waitFor(lambda: not ours(), "no process of ours any more", GONE + SLACK)

    def testTheDetectorCountsOnWhileThePanelIsClosed(self):
        before = self.start()
        self.app.click()
        self.app.waitUntilGone("push button", "Quit")
        self.app.waitForLine(f"👋 Slap #{self.KNOCKS} ", after=before)
        self.app.openPanel()
        self.assertIn(str(self.KNOCKS), self.app.labels())

    def testKnocksWhileTheApplicationIsSuspendedAreCountedWhenItGoesOn(self):
        before = self.start()
        self.app.waitForLine("👋 Slap #1 ", after=before)
        os.kill(self.app.pid, signal.SIGSTOP)
        time.sleep(self.KNOCKS + SLACK)
        suspended = self.app.lines()[before:]
        self.assertLess(sum(line.startswith("👋") for line in suspended), self.KNOCKS)
        os.kill(self.app.pid, signal.SIGCONT)
        self.app.waitForLine(f"👋 Slap #{self.KNOCKS} ", SLACK, after=before)
        numbers = [line.split()[2] for line in self.app.lines()[before:] if line.startswith("👋")]
        self.assertEqual(numbers, [f"#{n}" for n in range(1, self.KNOCKS + 1)])
        desktop.waitFor(lambda: str(self.KNOCKS) in self.app.labels(), "the count in the panel")
        self.app.click()
        self.app.waitUntilGone("push button", "Quit")
        time.sleep(GONE)
        self.app.openPanel()
        self.stop()
        self.assertEqual(self.app.complaints(), [])


if __name__ == "__main__":
    unittest.main()
