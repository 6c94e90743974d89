"""What tests of a slap's whole road share: the real application with its panel open, and the real
detector, which hears knocks out of a recording."""

import os
import pathlib
import subprocess
import tempfile
import unittest

import desktop

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])


class RoadCase(unittest.TestCase):
    KNOCKS = 5

    def bundleIn(self, folder):
        """The application folder to start; another one may be made in that folder."""
        return BUNDLE

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.bundle = self.bundleIn(self.folder)
        recording = self.folder / "knocks.wav"
        subprocess.run([desktop.ROOT / "scripts" / "make-recording", "--count", str(self.KNOCKS),
                        "--lead", "1", "--gap", "1", "--tail", "120", recording], check=True)
        settings = pathlib.Path(os.environ["XDG_CONFIG_HOME"], "Bonkora", "spank.conf")
        settings.parent.mkdir(exist_ok=True)
        settings.write_text(f"sensor = file:{recording}\n")
        self.app = self.enterContext(desktop.Application(
            self.bundle, self.folder / "console", self.folder / "errors"))
        self.app.openPanel()

    def pressStart(self):
        self.app.press("push button", "Start")
        self.app.find("push button", "Stop")
