"""MATE."""

import subprocess

from hosts.x11 import X11


class Desktop(X11):
    name = "mate"
    title = "MATE 1.27"
    packages = ["mate-panel", "marco", "mate-settings-daemon", "gnome-themes-extra",
                "dconf-gsettings-backend", "x11-xserver-utils", "xterm"]
    currentDesktop = "MATE"
    manager = ["marco", "--no-composite"]
    tellsScale = True
    thickness = 25
    items = (0.5, 1.0)

    # The bar that is there without settings puts item and clock now so, now the other way round.
    OBJECTS = {
        "menu": {"object-type": "menu-bar", "position": "0"},
        "windows": {"applet-iid": "WnckletFactory::WindowListApplet", "position": "300"},
        "items": {"applet-iid": "NotificationAreaAppletFactory::NotificationArea", "position": "0",
                  "relative-to-edge": "end"}}

    def startSession(self):
        super().startSession()
        self.setDark(False)
        for schema, key, value in (("org.mate.interface", "window-scaling-factor", str(self.scale)),
                                   ("org.mate.font-rendering", "dpi", "96.0")):
            subprocess.run(["gsettings", "set", schema, key, value], check=True)
        self.layOutBar()
        self.run("settings", "mate-settings-daemon", "--no-daemon")

    def setDark(self, isDark):
        subprocess.run(["gsettings", "set", "org.mate.interface", "gtk-theme",
                        "Adwaita-dark" if isDark else "Adwaita"], check=True)

    def layOutBar(self):
        def put(schema, **values):
            for key, value in values.items():
                subprocess.run(["gsettings", "set", schema, key.replace("_", "-"), value], check=True)
        folder = "/org/mate/panel/"
        put("org.mate.panel", toplevel_id_list="['top']", object_id_list=str(list(self.OBJECTS)))
        put(f"org.mate.panel.toplevel:{folder}toplevels/top/", orientation="top", expand="true",
            size="24")
        for name, values in self.OBJECTS.items():
            put(f"org.mate.panel.object:{folder}objects/{name}/",
                **{"toplevel-id": "top", "object-type": "applet", "locked": "true"} | values)

    def startBar(self):
        self.run("bar", "mate-panel", "--replace")
