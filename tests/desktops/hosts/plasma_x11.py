"""Plasma on X11."""

import subprocess

from hosts.plasma import Plasma


class Desktop(Plasma):
    name = "plasma-x11"
    title = "Plasma 5.27, X11"
    packages = [*Plasma.packages, "kwin-x11", "x11-xserver-utils"]

    def startSession(self):
        if self.scale > 1:
            subprocess.run(["xrdb", "-merge"], input=f"Xft.dpi: {96 * self.scale}\n".encode(),
                           check=True)
        self.tellBus()
        self.run("manager", "kwin_x11")
        self.startServices()
