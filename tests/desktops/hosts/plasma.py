"""What the two Plasma desktops share: the service daemon that keeps the tray's watcher, and the shell
whose panel is the bar."""

import subprocess

from session import Host, waitFor


class Plasma(Host):
    currentDesktop = "KDE"
    bar = "bottom"
    thickness = 44
    items = (0.815, 0.843)    # left of the keyboard layout
    window = ["xterm", "-geometry", "40x8+60+500"]
    packages = ["plasma-workspace", "plasma-desktop", "xdg-desktop-portal", "xdg-desktop-portal-kde",
                "breeze", "qt6-wayland", "xterm"]

    def startServices(self):
        self.run("services", "kded5", KDE_FULL_SESSION="true")

        # A whole session's start-up would ask for this.
        def keepsWatch():
            return subprocess.run(
                ["gdbus", "call", "--session", "--dest", "org.kde.kded5", "--object-path", "/kded",
                 "--method", "org.kde.kded5.loadModule", "statusnotifierwatcher"],
                stdout=subprocess.DEVNULL, stderr=self.log).returncode == 0
        waitFor(keepsWatch, "Plasma's service daemon", 60, 0.5)

    def startBar(self):
        self.run("bar", "plasmashell", KDE_FULL_SESSION="true", KDE_SESSION_VERSION="5",
                 QT_SCALE_FACTOR="")

    def setDark(self, isDark):
        subprocess.run(["plasma-apply-colorscheme", "BreezeDark" if isDark else "BreezeLight"],
                       check=True, stdout=self.log, stderr=self.log)
