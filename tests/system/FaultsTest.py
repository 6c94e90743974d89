"""The real application among things that are broken: a detector that cannot run, a console that
nobody reads."""

import os
import pathlib
import shutil
import tempfile
import time
import unittest

import desktop

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])
KNOCKS = 3
RUNNER = "#!/bin/sh\n" + KNOCKS * """echo '{"type":"slap","amplitude":0.5}'\n""" + "sleep 60\n"
# Starts the application with a console whose reader has gone.
UNREAD = """import os, signal, sys
reading, writing = os.pipe()
os.dup2(writing, 1)
os.close(reading)
os.close(writing)
signal.signal(signal.SIGPIPE, signal.SIG_DFL)
os.execv(sys.argv[1], sys.argv[1:])
"""


def writeProgram(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text)
    path.chmod(0o755)


class Faults(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.bundle = self.folder / "Bonkora.app"
        shutil.copytree(BUNDLE, self.bundle, symlinks=True)
        self.program = self.bundle / "Contents/MacOS/bonkora"

    def launch(self, bundle):
        self.app = self.enterContext(desktop.Application(
            bundle, self.folder / "console", self.folder / "errors"))
        self.app.openPanel()

    def assertTheStartFailsWithOne(self, spank):
        self.launch(self.bundle)
        for _ in range(2):    # and it can be tried again
            self.app.press("push button", "Start")
            self.app.waitForLine("🔧 Found spank at: " + str(spank))
            self.app.find("label", "Error (code: 1)")
            self.app.find("push button", "Start")

    def testADetectorThatIsAFolderFailsOnlyWhenItIsLaunched(self):
        spank = self.bundle / "Contents/Resources/spank"
        spank.unlink()
        spank.mkdir()
        self.assertTheStartFailsWithOne(spank)

    def testADetectorThatMayNotBeRunFailsOnlyWhenItIsLaunched(self):
        spank = self.bundle / "Contents/Resources/spank"
        spank.unlink()
        spank.write_text("nothing that could run\n")
        spank.chmod(0o644)
        self.assertTheStartFailsWithOne(spank)

    def assertItCountsThroughAConsoleMadeBy(self, wrapper):
        writeProgram(self.bundle / "Contents/Helpers/osascript", RUNNER)
        writeProgram(self.folder / "wrapped/Contents/MacOS/bonkora", wrapper)
        self.launch(self.folder / "wrapped")
        self.app.press("push button", "Start")
        self.app.find("label", str(KNOCKS))
        self.app.press("push button", "Stop")
        self.app.find("push button", "Start")
        time.sleep(1)    # the runner's end is told on the console too
        self.assertIsNone(self.app.process.poll())
        self.assertEqual(self.app.lines(), [])
        self.assertEqual(self.app.complaints(), [])

    def testItCountsWithAConsoleThatIsClosed(self):
        self.assertItCountsThroughAConsoleMadeBy(f"#!/bin/sh\nexec {self.program} >&-\n")

    def testItCountsWithAConsoleThatNobodyReads(self):
        starter = self.folder / "unread.py"
        starter.write_text(UNREAD)
        self.assertItCountsThroughAConsoleMadeBy(
            f"#!/bin/sh\nexec /usr/bin/python3 {starter} {self.program}\n")


if __name__ == "__main__":
    unittest.main()
