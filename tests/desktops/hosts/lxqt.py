"""LXQt under openbox."""

import os

from hosts.x11 import X11


class Desktop(X11):
    name = "lxqt"
    title = "LXQt 1.2"
    packages = ["lxqt-panel", "lxqt-themes", "openbox", "x11-xserver-utils", "xterm"]
    currentDesktop = "LXQt"
    tellsScale = True
    bar = "bottom"
    thickness = 32
    items = (0.6, 0.97)

    def startSession(self):
        os.environ["XDG_CONFIG_DIRS"] = "/etc:/etc/xdg:/usr/share"
        # What its session settings' global scale becomes.
        os.environ["QT_SCALE_FACTOR"] = str(self.scale)
        super().startSession()

    def startBar(self):
        self.run("bar", "lxqt-panel")
