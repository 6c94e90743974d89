"""The menu-bar item in a panel of a real desktop that speaks the session bus's protocol for items:
there, clicked, explained, and back after the panel has come back."""

import os
import pathlib
import subprocess
import tempfile
import time
import unittest

import desktop
from gi.repository import Gio, GLib

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])
CONFIGURATION = pathlib.Path(os.environ["XDG_CONFIG_HOME"],
                             "xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml")
SETTLE = 0.5    # seconds: longer than a double click

# One panel along the top edge, with nothing but the items, at its right end.
SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array">
        <value type="int" value="1"/>
        <value type="int" value="2"/>
      </property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="separator">
      <property name="expand" type="bool" value="true"/>
      <property name="style" type="uint" value="0"/>
    </property>
    <property name="plugin-2" type="string" value="systray"/>
  </property>
</channel>
"""


class Panel:
    """Xfce's panel, for a with-block."""

    def __enter__(self):
        CONFIGURATION.parent.mkdir(parents=True, exist_ok=True)
        CONFIGURATION.write_text(SETTINGS)
        self.process = subprocess.Popen(["xfce4-panel"], stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()

    def showsItems(self):
        """Whether it has come so far as to take them."""
        watcher = "org.kde.StatusNotifierWatcher"
        try:
            answer = Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
                watcher, "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties", "Get",
                GLib.Variant("(ss)", (watcher, "IsStatusNotifierHostRegistered")), None,
                Gio.DBusCallFlags.NO_AUTO_START, 5000, None)
        except GLib.Error:
            return False    # it has not come yet
        return answer.unpack()[0]

    def seekItem(self):
        """The middle of the one item that it draws, or nothing."""
        for x, y, width, height in windows("wrapper-2.0"):
            # The part that holds the items, a pixel wide when there is none.
            if y == 0 and width > 16 and colours(x, y, width, height) > 2:
                return x + width // 2, y + height // 2
        return None

    def pointAtItem(self):
        """Moves the pointer there and returns where that is."""
        x, y = desktop.waitFor(self.seekItem, "the item in the panel")
        desktop.xdotool("mousemove", str(x), str(y))
        return x, y


def windows(kind):
    """Where the windows of that class that show are: x, y, width, height."""
    found = []
    for window in desktop.xdotool("search", "--onlyvisible", "--class", kind, check=False).split():
        shape = dict(line.split("=") for line in desktop.xdotool(
            "getwindowgeometry", "--shell", window, check=False).split())
        if shape:
            found.append(tuple(int(shape[key]) for key in ("X", "Y", "WIDTH", "HEIGHT")))
    return found


def colours(x, y, width, height):
    """How many there are in that part of the screen."""
    return int(subprocess.run(["convert", "x:root", "-crop", f"{width}x{height}+{x}+{y}",
                               "-format", "%k", "info:"], capture_output=True, text=True).stdout)


class Tray:
    """A tray that knows XEmbed only, for a with-block."""

    def __enter__(self):
        self.process = subprocess.Popen(
            ["trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request",
             "--height", "24"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def __exit__(self, *_):
        self.process.kill()
        self.process.wait()


class StatusNotifierPanel(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        desktop.xdotool("mousemove", "300", "300")

    def launch(self):
        self.app = self.enterContext(desktop.Application(
            BUNDLE, self.folder / "console", self.folder / "errors"))

    def assertAClickOpensThePanelBeneathTheItem(self, panel):
        x, y = panel.pointAtItem()
        time.sleep(SETTLE)
        desktop.xdotool("click", "1")
        self.app.find("push button", "Quit")
        left, top, width, height = self.app.panelBox()
        self.assertEqual((width, height), (340, 520))
        self.assertIn(x, range(left, left + width))
        self.assertGreater(top, y)
        self.assertLess(top, 40)

    def testAClickOnTheItemOpensThePanelBeneathItAndTheNextClosesIt(self):
        with Panel() as panel:
            desktop.waitFor(panel.showsItems, "a panel that takes items")
            self.launch()
            self.assertAClickOpensThePanelBeneathTheItem(panel)
            time.sleep(SETTLE)
            desktop.xdotool("click", "1")
            self.app.waitUntilGone("push button", "Quit")
            self.assertEqual(self.app.complaints(), [])

    def testAPanelThatCameBackShowsTheItemAndItsClicksWork(self):
        with Panel() as panel:
            self.launch()
            desktop.waitFor(panel.seekItem, "the item in the panel")
        with Panel() as panel:
            desktop.waitFor(panel.seekItem, "the item in the panel again")
            self.app.waitUntilGone("push button", "Quit")
            self.assertAClickOpensThePanelBeneathTheItem(panel)
        self.assertIsNone(self.app.process.poll())

    def testPointingAtTheItemShowsItsToolTip(self):
        with Panel() as panel:
            self.launch()
            desktop.waitFor(panel.seekItem, "the item in the panel")

            def toolTips():
                return [box for box in windows("wrapper-2.0") if box[2] > 64]
            self.assertEqual(toolTips(), [])
            x, y = panel.pointAtItem()
            (left, top, width, height), = desktop.waitFor(toolTips, "a tool tip")
            self.assertIn(x, range(left, left + width))
            self.assertGreater(top, y)
            self.assertGreater(colours(left, top, width, height), 2)

    def startAgain(self):
        program = BUNDLE / "Contents" / "MacOS" / "bonkora"
        self.assertEqual(subprocess.run([program], timeout=10).returncode, 0)
        self.app.find("push button", "Quit")

    def testASecondStartOpensThePanelInTheCornerAndLaterWhereTheItemWasClicked(self):
        with Panel() as panel:
            self.launch()
            x, _ = panel.pointAtItem()
            self.startAgain()
            self.assertEqual(self.app.panelBox(), (1280 - 344, 33, 340, 520))
            time.sleep(SETTLE)
            desktop.xdotool("key", "Escape")
            self.app.waitUntilGone("push button", "Quit")
            time.sleep(SETTLE)
            self.assertAClickOpensThePanelBeneathTheItem(panel)
            place = self.app.panelBox()
            time.sleep(SETTLE)
            desktop.xdotool("mousemove", "300", "300", "key", "Escape")
            self.app.waitUntilGone("push button", "Quit")
            time.sleep(SETTLE)    # as long as a person would take
            self.startAgain()
            self.assertEqual(self.app.panelBox(), place)
            self.assertIn(x, range(place[0], place[0] + place[2]))

    def testTheItemOfAnXembedTrayMovesIntoAPanelThatComes(self):
        with Tray():
            self.launch()
            desktop.waitFor(self.app.trayWindow, "the item in the tray")
            with Panel() as panel:
                desktop.waitFor(panel.seekItem, "the item in the panel")
                desktop.waitFor(lambda: not self.app.trayWindow(), "none in the tray any more")
                self.assertAClickOpensThePanelBeneathTheItem(panel)

    def testTheOpenPanelFollowsItsItemToTheEndOfANarrowerScreenAndBack(self):
        self.addCleanup(desktop.setScreenSize, 1280, 800)
        with Panel() as panel:
            self.launch()
            self.assertAClickOpensThePanelBeneathTheItem(panel)
            for width, height in ((1024, 768), (1280, 800)):
                desktop.setScreenSize(width, height)
                desktop.waitFor(lambda: self.app.panelBox() == (width - 344, 33, 340, 520),
                                f"the panel beneath the item of a screen {width} wide")
                self.assertIn(panel.seekItem()[0], range(width - 344, width))


if __name__ == "__main__":
    unittest.main()
