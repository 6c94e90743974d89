"""The application where no tray is: the panel is a window until there is one."""

import os
import pathlib
import subprocess
import tempfile
import unittest

import desktop

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])


class NoTray(unittest.TestCase):
    def setUp(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.app = self.enterContext(desktop.Application(
            BUNDLE, folder / "console", folder / "errors"))
        self.app.find("push button", "Quit")

    def testItSaysSoAndClosingTheWindowEndsIt(self):
        self.assertIn("no menu bar or tray", self.app.errors.read_text())
        self.assertEqual(self.app.lines(), [])
        window = desktop.xdotool("search", "--onlyvisible", "--name", "^Bonkora$").split()[0]

        def closes():
            # A window manager that is still busy with the window may lose the keys.
            desktop.xdotool("windowactivate", window, "key", "alt+F4", check=False)
            try:
                self.app.process.wait(1)
            except subprocess.TimeoutExpired:
                return False
            return True
        desktop.waitFor(closes, "the application ends with its window")
        self.assertEqual(self.app.process.returncode, 0)
        self.assertEqual(self.app.lines(), [])

    def testATrayThatAppearsGetsTheItemAndTheWindowGoes(self):
        tray = subprocess.Popen(["trayer", "--height", "24"], stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL)
        try:
            self.app.waitUntilGone("push button", "Quit")
            desktop.waitFor(self.app.trayWindow, "the item in the tray")
            self.app.openPanel()
        finally:
            tray.kill()
            tray.wait()


if __name__ == "__main__":
    unittest.main()
