"""The whole panel of the real program: every control, stopped and running.

A stand-in for the runner notes each launch, so that command line, number and time of every launch
are checked.
"""

import json
import os
import pathlib
import shutil
import tempfile
import time
import unittest

import claims
import desktop

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])
STAND_IN = desktop.ROOT / "tests" / "support" / "recording-runner"
RESTART = 1.0    # seconds from a change to the next launch
STOP = 0.5       # seconds from a change to the end of the runner before
QUIET = 1.5      # seconds in which a launch that should not come would have come
SETTINGS = {"cooldown": "750", "amplitude": "0.050", "mode": [], "scaling": True, "fast": False}


@unittest.skipIf(os.path.exists("/usr/bin/osascript"), "this system has a runner of its own")
class WholePanel(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.bundle = self.folder / "Bonkora.app"
        shutil.copytree(BUNDLE, self.bundle, symlinks=True)
        helpers = self.bundle / "Contents" / "Helpers"
        shutil.copy(STAND_IN, helpers / "osascript")
        self.log = helpers / "launches.jsonl"
        self.app = self.enterContext(desktop.Application(
            self.bundle, self.folder / "console", self.folder / "errors"))
        self.app.openPanel()
        self.settings = dict(SETTINGS)

    def tearDown(self):
        self.assertEqual(self.app.complaints(), [])

    # What the stand-in saw -------------------------------------------------------------------

    def events(self, kind):
        if not self.log.exists():
            return []
        found = [json.loads(line) for line in self.log.read_text().splitlines()]
        return [event for event in found if event["event"] == kind]

    def expected(self):
        """The runner's arguments for the settings as they should be now."""
        s = self.settings
        words = ["--stdio", "--cooldown", s["cooldown"], "--min-amplitude", s["amplitude"]]
        words += s["mode"] + ["--volume-scaling"] * s["scaling"] + ["--fast"] * s["fast"]
        command = " ".join(f'\\"{w}\\"' for w in [f"{self.bundle}/Contents/Resources/spank", *words])
        return ["-e", f'do shell script "{command}" with administrator privileges']

    def expectLaunch(self, number, delay):
        """Launch `number` (from 1) came, with these settings, and not sooner than `delay` s after the
        last act. How late a busy machine makes it says nothing; virtual time says that elsewhere."""
        launch = desktop.waitFor(lambda: self.events("started")[number - 1:], f"launch {number}")[0]
        self.assertEqual(launch["arguments"], self.expected())
        self.assertGreaterEqual(launch["time"] - self.app.acted, delay)
        return launch["time"]

    def expectRestart(self, change, **settings):
        """Makes a change while running: one launch, one second later, the old runner gone before."""
        launches, ends = len(self.events("started")), len(self.events("ended"))
        self.settings |= settings
        change()
        launch = self.expectLaunch(launches + 1, RESTART)
        end = self.events("ended")[ends]["time"]
        self.assertGreaterEqual(end - self.app.acted, STOP)
        self.assertLess(end, launch)
        time.sleep(QUIET - RESTART)    # a second launch would come now
        self.assertEqual(len(self.events("started")), launches + 1)
        self.app.find("push button", "Stop")

    def expectNoLaunch(self, change):
        launches = len(self.events("started"))
        change()
        time.sleep(QUIET)
        self.assertEqual(len(self.events("started")), launches)

    def start(self):
        launches = len(self.events("started"))
        self.app.press("push button", "Start")
        self.expectLaunch(launches + 1, 0)
        self.app.find("push button", "Stop")

    def stop(self):
        ends = len(self.events("ended"))
        self.app.press("push button", "Stop")
        self.app.find("push button", "Start")
        desktop.waitFor(lambda: self.events("ended")[ends:], "the runner's end")

    # What a person does ----------------------------------------------------------------------

    def choose(self, mode):
        self.app.press("radio button", mode)
        desktop.waitFor(lambda: self.app.isChecked("radio button", mode), f"{mode} checked")

    def flip(self, toggle):
        before = self.app.isChecked("check box", toggle)
        self.app.press("check box", toggle)
        desktop.waitFor(lambda: self.app.isChecked("check box", toggle) != before, f"{toggle} flipped")

    def drag(self, slider, fraction):
        """Drags the handle with the pointer and lets it go."""
        box = self.reveal("slider", slider)
        handle, middle = self.handle(slider, box), box.y + box.height // 2
        desktop.xdotool("mousemove", str(handle), str(middle), "mousedown", "1")
        target = box.x + round(box.width * fraction)
        for step in range(1, 6):
            desktop.xdotool("mousemove", str(handle + (target - handle) * step // 5), str(middle))
        self.app.acted = time.monotonic()
        desktop.xdotool("mouseup", "1")

    def handle(self, slider, box):
        element = self.app.find("slider", slider)
        low, high = element.get_minimum_value(), element.get_maximum_value()
        at = (element.get_current_value() - low) / (high - low)
        return box.x + 10 + round((box.width - 20) * at)

    def reveal(self, role, name):
        """Scrolls an element into the middle part of the panel and returns where it is."""
        footer = self.app.find("push button", "Quit").get_extents(desktop.Atspi.CoordType.SCREEN)
        header = self.app.find("label", "Bonkora").get_extents(desktop.Atspi.CoordType.SCREEN)
        desktop.xdotool("mousemove", str(header.x + 20), str(header.y + 100))
        for _ in range(40):
            box = self.app.find(role, name).get_extents(desktop.Atspi.CoordType.SCREEN)
            if box.y + box.height > footer.y - 12:
                desktop.xdotool("click", "5")
            elif box.y < header.y + 40:
                desktop.xdotool("click", "4")
            else:
                return box
        raise desktop.Missed(f"{role} {name!r} cannot be scrolled into view")

    def type(self, text):
        field = self.app.find("text", "Path to MP3 folder...")
        field.grab_focus()
        desktop.xdotool("key", "ctrl+a", "type", "--delay", "5", text)
        desktop.waitFor(lambda: self.path() == text, f"the field holds {text!r}")

    def path(self):
        field = self.app.find("text", "Path to MP3 folder...")
        return desktop.Atspi.Text.get_text(field, 0, -1)

    def browse(self, answer):
        """Opens the folder chooser and answers it with that button."""
        try:
            self.app.press("push button", "Browse")
        except desktop.GLib.Error:
            pass    # the call returns only when the chooser has closed
        self.app.press("push button", answer)
        self.app.waitUntilGone("push button", answer)
        self.app.find("push button", "Quit")

    # ------------------------------------------------------------------------------------------

    def testWhileStoppedChoicesAreKeptAndStartNothing(self):
        def everything():
            for mode in ("Sexy", "Halo", "Custom"):
                self.choose(mode)
            self.type("/music/my  knocks")
            self.browse("Cancel")
            self.assertEqual(self.path(), "/music/my  knocks")
            self.drag("Sensitivity", 0.9)
            self.drag("Cooldown", 0.1)
            self.flip("Volume scales with force")
            self.flip("Fast detection")

        self.expectNoLaunch(everything)
        sensitivity, cooldown = self.app.value("Sensitivity"), self.app.value("Cooldown")
        self.assertGreater(sensitivity, 0.4)
        self.assertLess(cooldown, 500)
        self.assertIn(f"{sensitivity:.3f}", self.app.labels())
        self.assertIn(f"{cooldown:.0f}ms", self.app.labels())
        self.settings = {"cooldown": f"{cooldown:.0f}", "amplitude": f"{sensitivity:.3f}",
                         "mode": ["--custom", "/music/my  knocks"], "scaling": False, "fast": True}
        self.start()
        self.stop()
        self.choose("Pain")
        self.settings["mode"] = []
        self.start()
        self.stop()
        self.assertEqual(len(self.events("started")), 2)

    def testEachModeChosenWhileRunningRestartsOnce(self):
        self.start()
        for mode, words in (("Sexy", ["--sexy"]), ("Halo", ["--halo"]), ("Custom", []),
                            ("Pain", []), ("Pain", [])):
            with self.subTest(mode):
                self.expectRestart(lambda: self.choose(mode), mode=words)
        self.assertEqual(len(self.events("started")), 6)

    def testAFolderTypedOrBrowsedForIsUsedFromTheNextStart(self):
        self.start()
        self.expectRestart(lambda: self.choose("Custom"))
        self.expectNoLaunch(lambda: self.type(str(self.folder)))
        self.expectNoLaunch(lambda: self.browse("Cancel"))
        self.assertEqual(self.path(), str(self.folder))
        self.expectNoLaunch(lambda: self.browse("Choose"))
        self.assertEqual(self.path(), str(self.folder))    # where the chooser opened
        self.expectNoLaunch(lambda: self.type("/music/gone"))
        self.expectNoLaunch(lambda: self.browse("Choose"))
        home = str(pathlib.Path.home())
        self.assertEqual(self.path(), home)
        self.stop()
        self.settings["mode"] = ["--custom", home]
        self.start()

    def testADragWhileRunningRestartsOnceWithTheValueShown(self):
        self.start()
        for slider, setting, text, fraction in (
                ("Sensitivity", "amplitude", "{:.3f}", 0.5), ("Cooldown", "cooldown", "{:.0f}", 0.8)):
            with self.subTest(slider):
                def change():
                    self.drag(slider, fraction)
                    self.settings[setting] = text.format(self.app.value(slider))
                self.expectRestart(change)
                self.assertNotEqual(self.settings[setting], SETTINGS[setting])

    def testAValueSetByAssistiveTechnologyIsOneDrag(self):
        self.start()
        self.expectRestart(lambda: self.app.setValue("Sensitivity", 0.305), amplitude="0.305")
        self.expectRestart(lambda: self.app.setValue("Cooldown", 1200), cooldown="1200")

    def testASwitchFlippedWhileRunningRestartsOnce(self):
        self.start()
        self.expectRestart(lambda: self.flip("Fast detection"), fast=True)
        self.expectRestart(lambda: self.flip("Volume scales with force"), scaling=False)
        self.expectRestart(lambda: self.flip("Fast detection"), fast=False)

    def testAfterANewStartOfTheApplicationEverySettingIsAsAtTheFirst(self):
        self.choose("Custom")
        self.type("/music")
        self.app.setValue("Sensitivity", 0.305)
        self.app.setValue("Cooldown", 1200)
        self.flip("Volume scales with force")
        self.flip("Fast detection")
        self.app.end()
        self.app = self.enterContext(desktop.Application(
            self.bundle, self.folder / "console2", self.folder / "errors2"))
        self.app.openPanel()
        self.settings = dict(SETTINGS)
        self.start()
        self.expectRestart(lambda: self.choose("Custom"))    # without a folder, again
        self.assertEqual(self.path(), "")

    def testTheKeyboardAloneReachesEverything(self):
        reached = []
        desktop.xdotool("mousemove", "5", "790")
        for _ in range(14):
            desktop.xdotool("key", "Tab")
            time.sleep(0.05)
            focused = [name or role for role, name, a in self.app.elements()
                       if a.get_state_set().contains(desktop.Atspi.StateType.FOCUSED)]
            reached += [name for name in focused if name not in reached]
        for name in ("Start", "Pain", "Sensitivity", "Cooldown", "Volume scales with force",
                     "Fast detection", "Quit"):
            self.assertIn(name, reached)
        order = [reached.index(name) for name in ("Pain", "Sensitivity", "Cooldown", "Quit")]
        self.assertEqual(order, sorted(order))


if __name__ == "__main__":
    claims.main()
