"""LXQt under openbox."""

import os

from hosts.x11 import X11


class Desktop(X11):
    name = "lxqt"
    title = "LXQt 1.2"
    packages = ["lxqt-panel", "lxqt-themes", "openbox", "x11-xserver-utils", "xterm"]
    currentDesktop = "LXQt"
    bar = "bottom"
    thickness = 32
    items = (0.6, 0.97)

    def startSession(self):
        os.environ["XDG_CONFIG_DIRS"] = "/etc:/etc/xdg:/usr/share"
        super().startSession()

    def startBar(self):
        self.run("bar", "lxqt-panel")
