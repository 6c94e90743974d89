"""sway with its own bar."""

from hosts.sway import Sway


class Desktop(Sway):
    name = "swaybar"
    title = "sway 1.7, swaybar"
    packages = ["sway", "swaybg", "foot", "xwayland", "qt6-wayland",
                "xdg-desktop-portal", "xdg-desktop-portal-gtk"]
    thickness = 24
    more = "bar {\n position top\n height 24\n tray_output *\n font pango:sans 9\n swaybar_command true\n}"
    limits = {"told": "swaybar shows neither an item's text nor its tool tip"}

    def startBar(self):
        self.run("bar", "swaybar", "-b", "bar-0")
