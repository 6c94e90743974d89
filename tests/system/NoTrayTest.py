"""The application where no tray is: the panel is a window until there is one."""

import os
import pathlib
import subprocess
import tempfile
import time
import unittest

import desktop

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])

GRACE = 1    # seconds without a tray before the panel is a window


class Tray:
    """A tray, for a with-block."""

    def __enter__(self):
        self.process = subprocess.Popen(["trayer", "--height", "24"], stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()


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

    def chooseAFolder(self):
        self.app.press("radio button", "Custom")
        self.app.press("push button", "Browse")
        self.app.find("push button", "Cancel")

    def cancel(self):
        """Escape, again where a window manager that was still busy lost the key."""
        def isGone():
            desktop.xdotool("key", "Escape")
            time.sleep(0.5)
            return not self.app.seek("push button", "Cancel")
        desktop.waitFor(isGone, "no folder chooser any more")

    def testATrayThatAppearsGetsTheItemAndTheWindowGoes(self):
        with Tray():
            self.app.waitUntilGone("push button", "Quit")
            desktop.waitFor(self.app.trayWindow, "the item in the tray")
            self.app.openPanel()

    def testAFolderChooserOutlivesTheComingAndTheGoingOfATray(self):
        self.chooseAFolder()
        with Tray():
            desktop.waitFor(self.app.trayWindow, "the item in the tray")
            time.sleep(GRACE)
            self.app.find("push button", "Cancel")
            self.cancel()
            self.app.waitUntilGone("push button", "Quit")
            self.app.openPanel()
            self.chooseAFolder()
        desktop.waitFor(lambda: not self.app.trayWindow(), "no item any more")
        time.sleep(2 * GRACE)
        self.app.find("push button", "Cancel")
        self.assertEqual(self.complaints(), 1)
        self.cancel()
        desktop.waitFor(lambda: self.complaints() == 2, "the panel as a window again")
        self.app.find("push button", "Quit")

    def testThePlainWindowAndTheFolderChooserHaveTheApplicationsIcon(self):
        self.chooseAFolder()
        windows = desktop.xdotool("search", "--onlyvisible", "--pid", str(self.app.pid)).split()
        names = {window: desktop.xdotool("getwindowname", window).strip() for window in windows}
        icons = {window: subprocess.run(["xprop", "-id", window, "_NET_WM_ICON"], text=True,
                                        capture_output=True).stdout
                 for window, name in names.items() if name}
        self.assertEqual(len(icons), 2, names)
        for window, icon in icons.items():
            self.assertIn("Icon (", icon, names[window])

    def complaints(self):
        return self.app.errors.read_text().count("no menu bar or tray")


if __name__ == "__main__":
    unittest.main()
