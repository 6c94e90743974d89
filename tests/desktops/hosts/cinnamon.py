"""Cinnamon, whose bar is part of its window manager."""

import subprocess

from hosts.x11 import X11


class Desktop(X11):
    name = "cinnamon"
    title = "Cinnamon 5.6"
    packages = ["cinnamon", "gnome-themes-extra", "dconf-gsettings-backend", "x11-xserver-utils",
                "xapp-sn-watcher", "xterm"]
    currentDesktop = "X-Cinnamon"
    tellsScale = True
    bar = "bottom"
    thickness = 40
    items = (0.6, 0.99)

    def startSession(self):
        self.paintRoot()
        self.tellBus()
        self.setDark(False)
        # Fractions of a scale are kept a screen, and whole ones for all, which is easier said.
        for schema, key, value in (("org.cinnamon.muffin", "experimental-features", "[]"),
                                   ("org.cinnamon.desktop.interface", "scaling-factor", str(self.scale))):
            subprocess.run(["gsettings", "set", schema, key, value], check=True)
        self.run("settings", "csd-xsettings")
        # Both are started with a session there.
        self.run("watcher", "/usr/libexec/xapps/sn-watcher/xapp-sn-watcher")

    def setDark(self, isDark):
        subprocess.run(["gsettings", "set", "org.cinnamon.desktop.interface", "gtk-theme",
                        "Adwaita-dark" if isDark else "Adwaita"], check=True)

    def startBar(self):
        self.run("bar", "cinnamon", "--replace", LIBGL_ALWAYS_SOFTWARE="1")
