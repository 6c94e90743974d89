"""i3 with its own bar: an X tray that gives every item a square."""

import subprocess

from hosts.x11 import X11
from session import waitFor


class Desktop(X11):
    name = "i3bar"
    title = "i3 4.22, i3bar"
    packages = ["i3-wm", "xterm", "x11-xserver-utils", "xsettingsd"]
    currentDesktop = "i3"
    thickness = 20
    limits = {"told": "i3bar shows neither an item's text nor its tool tip"}

    def startSession(self):
        config = self.write("i3/config", """# i3 config file (v4)
font pango:sans 8
bar {
 position top
 i3bar_command true
 colors { background #202020 }
}
""")
        self.manager = ["i3", "-c", str(config)]
        super().startSession()
        self.settings()

    def setDark(self, isDark):
        self.settings(**{"Net/ThemeName": '"Adwaita-dark"' if isDark else '"Adwaita"'})

    def startBar(self):
        def answers():
            return subprocess.run(["i3-msg", "-t", "get_version"], stdout=subprocess.DEVNULL,
                                  stderr=self.log).returncode == 0
        waitFor(answers, "i3", 30, 0.2)
        self.run("bar", "i3bar", "-b", "bar-0")
