"""The real application under a runner that writes slaps without pause, with a standard output that
nobody reads: it stays on time, in motion and small."""

import os
import pathlib
import shutil
import signal
import sys
import tempfile
import time
import unittest

import desktop

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])
SECONDS = float(os.environ.get("BONKORA_FLOOD_SECONDS", "60"))
RUNNER = """#!/usr/bin/python3 -ISB
import ctypes, os, signal, subprocess, time
parent = os.getppid()
dieWithParent = lambda: ctypes.CDLL(None).prctl(1, signal.SIGKILL)
yes = subprocess.Popen(["yes", '{"type":"slap","amplitude":0.5}'], preexec_fn=dieWithParent)
def end(*_):
    moment = time.monotonic()
    yes.kill()
    with open(%r, "a") as log:
        log.write(repr(moment) + "\\n")
    os._exit(0)
signal.signal(signal.SIGTERM, end)
while os.getppid() == parent:
    time.sleep(0.1)
os._exit(0)
"""


class Flood(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        bundle = self.folder / "Bonkora.app"
        shutil.copytree(BUNDLE, bundle, symlinks=True)
        self.ends = self.folder / "ends"
        runner = bundle / "Contents/Helpers/osascript"
        runner.unlink()
        runner.write_text(RUNNER % str(self.ends))
        runner.chmod(0o755)
        # Held open here, and never read: a pipe of 64 KiB that stays full.
        console = self.folder / "console"
        os.mkfifo(console)
        held = os.open(console, os.O_RDWR)
        self.addCleanup(os.close, held)
        self.app = self.enterContext(desktop.Application(bundle, console, self.folder / "errors"))
        self.app.openPanel()

    def start(self):
        self.app.press("push button", "Start")
        desktop.waitFor(lambda: self.count() > 1000, "slaps on the panel")

    def count(self):
        """The session's count as the panel shows it: the largest number there."""
        return max((int(text) for text in self.app.labels() if text.isdigit()), default=0)

    def resident(self):
        pages = pathlib.Path(f"/proc/{self.app.pid}/statm").read_text().split()[1]
        return int(pages) * os.sysconf("SC_PAGE_SIZE") / 2**20

    def say(self, text):
        print(f"({text}) ", end="", file=sys.stderr, flush=True)

    def testThePanelCountsOnAndMemoryStaysFlat(self):
        self.start()
        time.sleep(3)
        first, counts, deadline = self.resident(), [self.count()], time.monotonic() + SECONDS
        most = first
        while time.monotonic() < deadline:
            time.sleep(1)
            most = max(most, self.resident())
            counts.append(self.count())
        self.say(f"{first:.0f} MB, at most {most:.0f} MB; {counts[-1]} slaps")
        self.assertTrue(all(a < b for a, b in zip(counts, counts[1:])), "every look shows more")
        self.assertLess(most - first, 16)
        self.assertLess(most, 250)
        self.app.end(signal.SIGTERM)
        said = [line for line in self.app.complaints() if "standard output were dropped" in line]
        self.assertEqual(len(said), 1, "one line for all that nobody has read")

    def testStopsStepRunsOnTime(self):
        self.start()
        button = self.app.find("push button", "Stop")
        pressed = time.monotonic()
        button.do_action(0)
        desktop.waitFor(lambda: self.ends.exists() and self.ends.read_text(), "the runner is asked to end")
        late = float(self.ends.read_text()) - pressed - 0.5
        self.say(f"{1000 * late:.0f} ms late")
        self.assertGreater(late, -0.01)
        self.assertLess(late, 0.2)
        self.app.find("push button", "Start")

    def testQuitEndsIt(self):
        self.start()
        button = self.app.find("push button", "Quit")
        pressed = time.monotonic()
        button.do_action(0)
        self.assertEqual(self.app.process.wait(10), 0)
        took = time.monotonic() - pressed
        self.say(f"{took:.2f} s")
        self.assertLess(took, 1.5)    # 0.3, and half a second for the console's reader

    def testSigtermEndsIt(self):
        self.start()
        asked = time.monotonic()
        self.assertEqual(self.app.end(signal.SIGTERM), 0)
        took = time.monotonic() - asked
        self.say(f"{took:.2f} s")
        self.assertLess(took, 1.2)


if __name__ == "__main__":
    unittest.main()
