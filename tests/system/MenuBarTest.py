"""The menu-bar item and its panel window on a real desktop: trays of both kinds, clicks, presses
outside, a second start, a bar that comes and goes."""

import os
import pathlib
import subprocess
import tempfile
import time
import unittest

import desktop
from gi.repository import Gio, GLib

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])
PROGRAM = BUNDLE / "Contents" / "MacOS" / "bonkora"
SETTLE = 0.5    # seconds: longer than a double click, and than the second look of a click's echo
ITEM = "org.kde.StatusNotifierItem"


class Bar:
    """A bar on the session bus, for a with-block."""

    def __enter__(self):
        self.process = subprocess.Popen([desktop.ROOT / "tests/support/status-notifier-bar"],
                                        stdout=subprocess.PIPE, text=True)
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.communicate()

    def registered(self):
        """The name of the next item that registers."""
        return self.process.stdout.readline().strip()


def call(name, path, interface, method, parameters=None):
    return Gio.bus_get_sync(Gio.BusType.SESSION).call_sync(
        name, path, interface, method, parameters, None, Gio.DBusCallFlags.NONE, 5000,
        None).unpack()


def itemProperty(item, name):
    return call(item, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                GLib.Variant("(ss)", (ITEM, name)))[0]


class MenuBar(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))

    def launch(self):
        self.app = self.enterContext(desktop.Application(
            BUNDLE, self.folder / "console", self.folder / "errors"))
        return self.app

    def isOpen(self):
        return self.app.seek("push button", "Quit")

    def testAClickOpensThePanelAndTheNextClosesIt(self):
        self.launch().openPanel()
        time.sleep(SETTLE)
        self.app.click()
        self.app.waitUntilGone("push button", "Quit")
        time.sleep(SETTLE)
        self.app.openPanel()

    def testADoubleClickLeavesItOpen(self):
        self.launch()
        window = desktop.waitFor(self.app.trayWindow, "the item in the tray")
        desktop.xdotool("mousemove", "--window", window, "8", "8", "click", "--repeat", "2",
                        "--delay", "60", "1")
        self.app.find("push button", "Quit")
        time.sleep(SETTLE)
        self.assertTrue(self.isOpen())

    def testAPressOutsideClosesIt(self):
        self.launch().openPanel()
        time.sleep(SETTLE)
        desktop.xdotool("mousemove", "200", "600", "click", "1")
        self.app.waitUntilGone("push button", "Quit")

    def testEscapeClosesIt(self):
        self.launch().openPanel()
        time.sleep(SETTLE)
        desktop.xdotool("key", "Escape")
        self.app.waitUntilGone("push button", "Quit")

    def testItHangsBelowTheBarInsideTheScreen(self):
        self.launch().openPanel()
        left, top, width, height = self.app.panelBox()
        self.assertEqual((width, height), (340, 520))
        self.assertIn(top, range(24, 40))
        self.assertLessEqual(left + width, 1280)

    def assertItIsBeneathTheItem(self, screenWidth, screenHeight):
        def isThere():
            # An item that is moving with its tray may be gone for a moment.
            window, box = self.app.trayWindow(), self.app.panelBox()
            if not window or not box:
                return False
            item = dict(line.split("=") for line in desktop.xdotool(
                "getwindowgeometry", "--shell", window, check=False).split())
            middle = int(item["X"]) + int(item["WIDTH"]) // 2 if item else -1
            left, top, width, height = box
            return (screenWidth - 120 < middle < screenWidth and
                    left <= middle < left + width <= screenWidth and
                    24 <= top < 40 and top + height <= screenHeight)
        desktop.waitFor(isThere, f"the panel beneath the item in {screenWidth} by {screenHeight}")

    def testItFollowsItsItemOnAScreenThatChanges(self):
        self.addCleanup(desktop.setScreenSize, 1280, 800)
        self.launch().openPanel()
        for width, height in ((1024, 768), (640, 480), (1280, 800)):
            desktop.setScreenSize(width, height)
            self.assertItIsBeneathTheItem(width, height)
        self.assertEqual(self.app.panelBox()[2:], (340, 520))

    def testItOpensInTheRightPlaceAfterAChangeOfTheScreenWhileClosed(self):
        self.addCleanup(desktop.setScreenSize, 1280, 800)
        self.launch().openPanel()
        time.sleep(SETTLE)
        desktop.xdotool("key", "Escape")
        self.app.waitUntilGone("push button", "Quit")
        desktop.setScreenSize(800, 600)
        time.sleep(SETTLE)
        self.app.openPanel()
        self.assertItIsBeneathTheItem(800, 600)
        self.assertEqual(self.app.complaints(), [])

    def testTheFolderChooserKeepsThePanelOpen(self):
        self.launch().openPanel()
        self.app.press("radio button", "Custom")
        self.app.press("push button", "Browse")
        self.app.find("push button", "Cancel")
        time.sleep(SETTLE)
        self.assertTrue(self.isOpen())
        desktop.xdotool("key", "Escape")
        self.app.waitUntilGone("push button", "Cancel")
        time.sleep(SETTLE)
        self.assertTrue(self.isOpen())

    def minimiseTheFolderChooser(self):
        """Returns its window."""
        def isBig(window):
            shape = dict(line.split("=") for line in desktop.xdotool(
                "getwindowgeometry", "--shell", window, check=False).split())
            return shape and int(shape["WIDTH"]) > 340
        chooser = desktop.waitFor(lambda: next(filter(isBig, self.visibleWindows()), None),
                                  "the folder chooser's window")
        desktop.xdotool("windowminimize", chooser)
        desktop.waitFor(lambda: chooser not in self.visibleWindows(), "a minimised chooser")
        time.sleep(SETTLE)
        return chooser

    def visibleWindows(self):
        return desktop.xdotool("search", "--onlyvisible", "--pid", str(self.app.pid),
                               check=False).split()

    def assertBothComeBack(self, chooser, way):
        def areThere():
            shown = self.visibleWindows()
            return chooser in shown and any(
                "Width: 340\n" in subprocess.run(["xwininfo", "-id", window], text=True,
                                                 capture_output=True).stdout for window in shown)
        desktop.waitFor(areThere, f"chooser and panel again by {way}")

    def openAFolderChooser(self):
        self.app.openPanel()
        self.app.press("radio button", "Custom")
        self.app.press("push button", "Browse")
        self.app.find("push button", "Cancel")

    def testAMinimisedFolderChooserComesBackByAClickAndByASecondStart(self):
        self.launch()
        self.openAFolderChooser()
        for way, act in (("a click", self.app.click),
                         ("a second start", lambda: subprocess.run([PROGRAM], timeout=10)),
                         ("another click", self.app.click)):
            chooser = self.minimiseTheFolderChooser()
            act()
            self.assertBothComeBack(chooser, way)

    def testAMinimisedFolderChooserComesBackByOpen(self):
        with Bar() as bar:
            self.launch()
            bar.registered()
            self.openAFolderChooser()
            chooser = self.minimiseTheFolderChooser()
            item = self.app.busName()
            menu = itemProperty(item, "Menu")
            layout = call(item, menu, "com.canonical.dbusmenu", "GetLayout",
                          GLib.Variant("(iias)", (0, -1, [])))[1]
            call(item, menu, "com.canonical.dbusmenu", "Event",
                 GLib.Variant("(isvu)", (layout[2][0][0], "clicked", GLib.Variant("s", ""), 0)))
            self.assertBothComeBack(chooser, "Open")

    def testItFollowsTheDesktopFromLightToDarkAndBackWhileOpen(self):
        portal = self.enterContext(subprocess.Popen(
            [desktop.ROOT / "tests/support/appearance-portal", "2"], text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE))
        portal.stdout.readline()
        self.launch().openPanel()

        def isDark():
            x, y = desktop.centre(self.app.find("push button", "Start"))
            grey = subprocess.run(
                ["convert", "x:root", "-crop", f"1x1+{x - 100}+{y}", "-colorspace", "gray",
                 "-format", "%[fx:u]", "info:"], capture_output=True, text=True)
            return float(grey.stdout) < 0.5

        desktop.waitFor(lambda: not isDark(), "a light panel")
        for scheme in (1, 2):
            portal.stdin.write(f"{scheme}\n")
            portal.stdin.flush()
            desktop.waitFor(lambda: isDark() == (scheme == 1), f"the panel in scheme {scheme}")
        portal.kill()

    def testASecondStartOpensThePanelOfTheFirstAndEnds(self):
        self.launch()
        desktop.waitFor(self.app.trayWindow, "the item in the tray")
        second = subprocess.run([PROGRAM], capture_output=True, text=True, timeout=10)
        self.assertEqual((second.returncode, second.stdout, second.stderr), (0, "", ""))
        self.app.find("push button", "Quit")

    def testABarOnTheSessionBusGetsTitleToolTipIconAndMenu(self):
        with Bar() as bar:
            self.launch()
            self.assertEqual(bar.registered(), "/StatusNotifierItem")
            item = self.app.busName()
            self.assertEqual(itemProperty(item, "Title"), "Bonkora OFF")
            self.assertEqual(itemProperty(item, "XAyatanaLabel"), "Bonkora OFF")
            self.assertEqual(itemProperty(item, "ToolTip")[2], "Bonkora OFF")
            self.assertEqual(itemProperty(item, "Status"), "Active")
            for width, height, pixels in itemProperty(item, "IconPixmap"):
                self.assertEqual(len(pixels), width * height * 4)
                self.assertGreater(max(pixels), 0)
            menu = itemProperty(item, "Menu")
            layout = call(item, menu, "com.canonical.dbusmenu", "GetLayout",
                          GLib.Variant("(iias)", (0, -1, [])))[1]
            (entry, properties, children), = layout[2]
            self.assertEqual((properties["label"], children), ("Open", []))
            call(item, menu, "com.canonical.dbusmenu", "Event",
                 GLib.Variant("(isvu)", (entry, "clicked", GLib.Variant("s", ""), 0)))
            self.app.find("push button", "Quit")
            self.app.press("push button", "Start")
            desktop.waitFor(lambda: itemProperty(item, "Title") == "Bonkora 0", "the running title")
            self.app.press("push button", "Stop")
            desktop.waitFor(lambda: itemProperty(item, "Title") == "Bonkora OFF", "the stopped title")

    def testABarThatCameBackGetsTheItemAgain(self):
        with Bar() as bar:
            self.launch()
            self.assertEqual(bar.registered(), "/StatusNotifierItem")
        desktop.waitFor(self.app.trayWindow, "the item in the tray instead")
        with Bar() as bar:
            self.assertEqual(bar.registered(), "/StatusNotifierItem")
            desktop.waitFor(lambda: not self.app.trayWindow(), "no item in the tray any more")
        self.assertEqual(self.app.complaints(), [])

    def testSigtermAndSigintEndItWithoutTheStop(self):
        for number in (desktop.signal.SIGTERM, desktop.signal.SIGINT):
            self.launch()
            desktop.waitFor(self.app.trayWindow, "the item in the tray")
            self.assertEqual(self.app.end(number), 0)
            self.assertEqual(self.app.lines(), [])


class WithoutDesktop(unittest.TestCase):
    def run_(self, *arguments, **environment):
        kept = {k: v for k, v in os.environ.items() if k not in ("DISPLAY", "QT_QPA_PLATFORM")}
        return subprocess.run([PROGRAM, *arguments], capture_output=True, text=True, timeout=10,
                              env=kept | environment)

    def testHelpAndVersionNeedNoDisplay(self):
        told = self.run_("--help")
        self.assertEqual((told.returncode, told.stderr), (0, ""))
        self.assertIn("Usage: bonkora", told.stdout)
        told = self.run_("--version")
        self.assertEqual(told.returncode, 0)
        self.assertRegex(told.stdout, r"^bonkora \d+\.\d+\.\d+\n$")

    def testAnUnknownOptionIsToldOnStandardError(self):
        told = self.run_("--loud")
        self.assertEqual((told.returncode, told.stdout), (2, ""))
        self.assertIn("--loud", told.stderr)
        self.assertIn("Usage: bonkora", told.stderr)

    def testAMissingDisplayIsToldOnStandardError(self):
        told = self.run_()
        self.assertEqual((told.returncode, told.stdout), (1, ""))
        self.assertIn("there is no display", told.stderr)
        told = self.run_(DISPLAY=":987")
        self.assertEqual((told.returncode, told.stdout), (1, ""))
        self.assertIn(":987", told.stderr)

    def testWithoutASessionBusNoDaemonIsStarted(self):
        before = {pid for pid, (_, _, words) in desktop.processes().items()
                  if words and words[0].endswith(("dbus-daemon", "dbus-launch"))}
        with tempfile.TemporaryDirectory() as folder:
            with desktop.Application(BUNDLE, f"{folder}/console", f"{folder}/errors",
                                     DBUS_SESSION_BUS_ADDRESS="", XDG_RUNTIME_DIR=folder) as app:
                desktop.waitFor(app.trayWindow, "the item in the tray")
                second = subprocess.run(
                    [PROGRAM], capture_output=True, text=True, timeout=10,
                    env=os.environ | {"DBUS_SESSION_BUS_ADDRESS": "", "XDG_RUNTIME_DIR": folder})
                self.assertEqual(second.returncode, 0)
                self.assertIn("running already", second.stderr)
                after = {pid for pid, (_, _, words) in desktop.processes().items()
                         if words and words[0].endswith(("dbus-daemon", "dbus-launch"))}
                self.assertEqual(after - before, set())


if __name__ == "__main__":
    unittest.main()
