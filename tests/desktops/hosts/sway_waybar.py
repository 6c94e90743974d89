"""sway with waybar, whose tray and task bar are both shown."""

import json

from hosts.sway import Sway


class Desktop(Sway):
    name = "sway-waybar"
    title = "sway 1.7, waybar"
    packages = ["sway", "swaybg", "waybar", "foot", "xwayland", "qt6-wayland", "dbus-user-session",
                "xdg-desktop-portal", "xdg-desktop-portal-gtk"]
    thickness = 28
    modules = {"modules-left": ["sway/workspaces", "wlr/taskbar"], "modules-right": ["tray"]}

    def startBar(self):
        config = self.write("waybar/config", json.dumps({
            "height": self.thickness, "position": self.bar, "tray": {"icon-size": 20},
            **self.modules}))
        style = self.write("waybar/style.css", """
            * { font-size: 12px; min-height: 0; border-radius: 0; }
            window#waybar { background: #202020; color: white; }
            #tray { padding: 0 8px; }""")
        self.run("bar", "waybar", "-c", str(config), "-s", str(style))
