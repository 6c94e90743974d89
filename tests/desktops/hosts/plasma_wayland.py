"""Plasma on Wayland. KWin nests in an X window; its program carries a file capability that a
container may not grant, so a copy without it runs, and it draws without a graphics card."""

import shutil

from hosts.plasma import Plasma


class Desktop(Plasma):
    name = "plasma-wayland"
    title = "Plasma 5.27, Wayland"
    packages = [*Plasma.packages, "kwin-wayland", "plasma-workspace-wayland"]
    isWayland = True

    def startSession(self):
        copy = self.runtime / "kwin_wayland"
        shutil.copy(shutil.which("kwin_wayland"), copy)
        told = self.runtime / "session-environment"
        first = self.runtime / "first-program"
        first.write_text(f"#!/bin/sh\nenv > {told}\nexec sleep 3600\n")
        first.chmod(0o700)
        self.run("compositor", str(copy), "--x11-display", self.screen.display, "--width",
                 str(self.screen.width // self.scale), "--height",
                 str(self.screen.height // self.scale), "--scale", str(self.scale), "--xwayland",
                 "--socket", "wayland-plasma", str(first), KWIN_COMPOSE="Q", XDG_SESSION_TYPE="wayland", KDE_FULL_SESSION="true")
        self.enterWayland(told)
        self.startServices()
