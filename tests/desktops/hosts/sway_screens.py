"""sway with waybar on four screens, each of another scale. The bars are below,
with the items in their middle: waybar does not tell where an item is, and its place must be found."""

import re
import subprocess

from hosts.sway_waybar import Desktop as SwayWaybar
from picture import Box

SCREENS = ((Box(0, 0, 1280, 800), 1), (Box(1280, 0, 1440, 1200), 2),
           (Box(0, 1200, 1600, 1000), 1.25), (Box(1600, 1200, 1500, 1050), 1.5))


class Desktop(SwayWaybar):
    name = "sway-screens"
    title = "sway 1.7, waybar, four screens"
    size = "3100x2250"
    scaling = False
    others = len(SCREENS) - 1
    bar = "bottom"
    items = (0.4, 0.6)
    modules = {"modules-left": ["sway/workspaces", "wlr/taskbar"], "modules-center": ["tray"]}
    isExact = True
    # Sway counts logical pixels.
    more = "\n".join(f"output X11-{number} resolution {box.width}x{box.height} scale {scale}"
                     f" position {box.x} {box.y}" for number, (box, scale) in enumerate(SCREENS, 1))

    def startSession(self):
        super().startSession()
        # Each is a window of its own on the outer screen, made in their order, nameless.
        tree = subprocess.run(["xwininfo", "-display", self.screen.display, "-root", "-children"],
                              check=True, capture_output=True, text=True).stdout
        windows = sorted((int(found, 16) for found in re.findall(r"^ +(0x\w+) .*:", tree, re.M)))
        for window, (box, _) in zip(windows, SCREENS):
            self.screen.xdotool("windowmove", window, box.x, box.y)
        self.screen.hold = 0.12    # as long as a finger does: bars ask for the panel before it is up
        self.lookAt(0)

    def lookAt(self, number):
        self.box, self.scale = SCREENS[number]

    def area(self):
        return self.box
