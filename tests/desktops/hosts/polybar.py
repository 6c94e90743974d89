"""polybar under openbox."""

from hosts.x11 import X11


class Desktop(X11):
    name = "polybar"
    title = "openbox, polybar"
    packages = ["openbox", "polybar", "xterm", "x11-xserver-utils", "xsettingsd"]
    thickness = 24
    limits = {"told": "polybar shows neither an item's text nor its tool tip"}

    def startSession(self):
        super().startSession()
        self.settings()

    def setDark(self, isDark):
        self.settings(**{"Net/ThemeName": '"Adwaita-dark"' if isDark else '"Adwaita"'})

    def startBar(self):
        config = self.write("polybar/config.ini", f"""
[bar/main]
width = 100%
height = {self.thickness * self.scale}
background = #202020
modules-left = title
tray-position = right
tray-maxsize = {self.thickness * self.scale}
[module/title]
type = custom/text
content = polybar
""")
        self.run("bar", "polybar", "-c", str(config), "main")
