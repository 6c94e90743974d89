"""What the desktops have in common that are an X window manager and a bar, started by hand."""

import os
import signal
import subprocess

from session import Host


class X11(Host):
    manager = ["openbox"]
    tellsScale = False    # whether the desktop has a setting for it, and tells programs itself

    def startSession(self):
        self.paintRoot()
        self.tellBus()
        if self.scale > 1 and not self.tellsScale:
            subprocess.run(["xrdb", "-merge"], input=f"Xft.dpi: {96 * self.scale}\n".encode(),
                           check=True)
        self.run("manager", *self.manager)

    def settings(self, **values):
        """What a settings daemon would announce: XSETTINGS, from xsettingsd."""
        lines = {"Net/ThemeName": '"Adwaita"', "Xft/DPI": str(96 * 1024 * self.scale)} | values
        path = self.write("xsettingsd.conf", "".join(f"{k} {v}\n" for k, v in lines.items()))
        if "settings" in self.running:
            os.kill(self.running["settings"].pid, signal.SIGHUP)
        else:
            self.run("settings", "xsettingsd", "-c", str(path))
