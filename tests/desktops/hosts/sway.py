"""What the two sway desktops share. Sway nests with the X11 backend and draws without a graphics
card. It refuses to run as root, so root starts it as nobody, with a runtime
folder of nobody's: sway needs no session bus, and what does is started by root. The bar is started by hand, so that it
can be restarted."""

import os
import subprocess

from session import PALE, Host

NOBODY = 65534


class Sway(Host):
    currentDesktop = "sway"
    isWayland = True
    window = ["foot", "--window-size-pixels=400x200", "sleep", "600"]
    more = ""    # lines of the settings file

    def startSession(self):
        width, height = self.screen.width, self.screen.height
        own = self.runtime.parent / "sway"
        own.mkdir(0o700)
        config = own / "config"
        config.write_text(f"""
output * resolution {width}x{height} scale {self.scale}
output * bg {PALE} solid_color
default_border pixel 1
exec env > {own}/session-environment
{self.more}
""")
        self.run("sway", *self.notAsRoot(own), "sway", "-c", str(config), WLR_BACKENDS="x11",
                 WLR_RENDERER="pixman", WLR_X11_OUTPUTS=str(1 + self.others), HOME=str(own), XDG_RUNTIME_DIR=str(own))
        self.enterWayland(own / "session-environment", "SWAYSOCK")

    def notAsRoot(self, own):
        if os.getuid() != 0:
            return []
        os.chmod(self.runtime.parent, 0o711)
        os.chown(own, NOBODY, NOBODY)
        return ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]

    def message(self, *words):
        return subprocess.run(["swaymsg", *words], check=False, capture_output=True, text=True).stdout
