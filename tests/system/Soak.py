"""Real starts and stops of the real application for a while, with accidents: the runner and the
tray host killed, the panel opened and closed, requests overlapping. Counts exact, nothing left.

BONKORA_SOAK_SECONDS says for how long (default 60).
"""

import os
import pathlib
import random
import shutil
import signal
import subprocess
import tempfile
import time
import unittest

import desktop

SECONDS = float(os.environ.get("BONKORA_SOAK_SECONDS", "60"))
SLAPS = 1000    # of each start
RUNNER = """#!/bin/sh
cat "{lines}"
exec sleep 1000
"""


def memoryKiB(pid):
    """What is the process's own: what it shares grows when others that share it end."""
    text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    return next(int(line.split()[1]) for line in text.splitlines()
                if line.startswith("Private_Dirty:"))


def threads(pid):
    return len(os.listdir(f"/proc/{pid}/task"))


class Soak(unittest.TestCase):
    def setUp(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        bundle = folder / "Bonkora.app"
        shutil.copytree(os.environ["BONKORA_BUNDLE"], bundle)
        lines = folder / "lines"
        lines.write_text('{"type":"slap","amplitude":0.5}\n' * SLAPS)
        runner = bundle / "Contents/Helpers/osascript"
        runner.write_text(RUNNER.format(lines=lines))
        self.app = self.enterContext(desktop.Application(bundle, folder / "console", folder / "errors"))
        self.launches = 0
        self.host = None

    def tearDown(self):
        if self.host:
            self.host.kill()
            self.host.wait()

    def slaps(self):
        return sum(line.startswith("👋") for line in self.app.lines())

    def isRunning(self):
        return bool(desktop.below(self.app.pid))

    def press(self, name):
        if not self.app.seek("push button", name):
            self.app.openPanel()
        self.app.press("push button", name)

    def start(self):
        self.press("Start")
        self.launches += 1
        desktop.waitFor(lambda: self.slaps() == self.launches * SLAPS, "every slap counted")

    def stop(self):
        before = len(self.app.lines())
        self.press("Stop")
        self.app.waitForLine("⏹ Spank process ended", after=before)
        self.app.waitForLine("⏹ Spank stopped", after=before)

    def cycle(self, chance):
        self.start()
        if chance.random() < 0.3:    # the runner dies by itself
            before = len(self.app.lines())
            for pid in desktop.below(self.app.pid):
                os.kill(pid, signal.SIGKILL)
            self.app.waitForLine("⏹ Spank process ended with code: 9", after=before)
        else:
            self.stop()
        if chance.random() < 0.3:
            self.app.click()    # closes the panel, or opens it
            time.sleep(0.4)     # a click right after a closing one belongs to it
        if chance.random() < 0.2:
            self.exchangeHost()

    def exchangeHost(self):
        """The tray host dies and another comes: the item must come back."""
        subprocess.run(["pkill", "-KILL", "-P", str(os.getppid()), "trayer"], check=False)
        if self.host:
            self.host.kill()
            self.host.wait()
        self.host = subprocess.Popen(["trayer", "--edge", "top", "--align", "right",
                                      "--widthtype", "request", "--height", "24"],
                                     stderr=subprocess.DEVNULL)
        desktop.waitFor(self.app.trayWindow, "the item in the new tray host")

    def held(self):
        """Descriptors and threads, with the panel closed: an open one watches the stored total."""
        for _ in range(4):
            if not self.app.seek("push button", "Quit"):
                break
            self.app.click()
            time.sleep(1)
        return len(desktop.descriptors(self.app.pid)), threads(self.app.pid)

    def testNothingIsLostAndNothingIsLeft(self):
        chance = random.Random(1)
        for _ in range(5):
            self.cycle(chance)
        descriptors, threadCount = self.held()
        memory = memoryKiB(self.app.pid)
        end = time.monotonic() + SECONDS
        cycles = 0
        while time.monotonic() < end:
            self.cycle(chance)
            cycles += 1
        self.assertFalse(self.isRunning())
        self.assertEqual(desktop.zombies(self.app.pid), [])
        self.held()
        desktop.waitFor(lambda: len(desktop.descriptors(self.app.pid)) <= descriptors
                        and threads(self.app.pid) <= threadCount,
                        "no more descriptors or threads than at the beginning")
        grown = memoryKiB(self.app.pid) - memory
        print(f"{cycles} cycles, {self.slaps()} slaps, memory grown by {grown} KiB", flush=True)
        self.assertEqual(self.slaps(), self.launches * SLAPS)
        self.assertLess(grown, 3000)


if __name__ == "__main__":
    unittest.main()
