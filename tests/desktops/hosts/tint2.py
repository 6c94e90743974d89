"""tint2 under openbox: an X bar with a tray of the old kind."""

from hosts.x11 import X11


class Desktop(X11):
    name = "tint2"
    title = "openbox, tint2"
    packages = ["openbox", "tint2", "xterm", "x11-xserver-utils", "xsettingsd"]
    thickness = 30

    def startSession(self):
        super().startSession()
        self.settings()

    def setDark(self, isDark):
        self.settings(**{"Net/ThemeName": '"Adwaita-dark"' if isDark else '"Adwaita"'})

    def startBar(self):
        config = self.write("tint2/tint2rc", f"""
panel_items = TS
panel_size = 100% {self.thickness * self.scale}
panel_position = top center horizontal
panel_dock = 0
wm_menu = 1
strut_policy = follow_size
rounded = 0
background_color = #202020 100
taskbar_mode = single_desktop
task_text = 1
task_maximum_size = 200 30
systray_padding = 4 2 4
systray_sort = right2left
systray_icon_size = {22 * self.scale}
""")
        self.run("bar", "tint2", "-c", str(config))
