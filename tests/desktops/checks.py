"""What a desktop must show: the program is started in a host's session, and each check says yes or
no to one claim, from the pixels of the screen and the accessibility bus. One thread only."""

import contextlib
import os
import pathlib
import time

import desktop
import picture
from desktop import Missed, check, waitFor
from picture import Box

MODES = ("Pain", "Sexy", "Halo", "Custom")
BUNDLE = os.environ["BONKORA_BUNDLE"]
PANEL = (340, 520)
NEAR = 8             # pixels between bar and panel, at most
PATIENCE = 15        # seconds for something to happen on a busy machine
AT_ONCE = 2          # seconds within which the item must be there
GRACE = 0.6          # between two clicks: a panel that has just come or gone takes none


class Trial:
    """One start of the program in a session, and what was seen of it."""

    def __init__(self, host, folder):
        self.host = host
        self.screen = host.screen
        self.folder = pathlib.Path(folder)
        self.app = self.item = self.other = None
        self.hasMenu = False
        self.opened = None     # the box of the open panel, when last measured
        self.rest = self.bare = None

    # Acting --------------------------------------------------------------------------------------

    def park(self):
        """Takes the pointer away from everything that could light up."""
        x, y = self.host.desk()
        self.screen.move(x, y)

    def clickItem(self, button=1):
        x, y = self.item.centre
        self.screen.click(x, y, button)
        if button == 1 and self.host.clicks == 2:
            self.screen.xdotool("click", button)

    def isOpen(self):
        return self.app.seek("push button", "Quit") is not None

    def open(self):
        if not self.isOpen():
            time.sleep(GRACE)
            self.clickItem()
            waitFor(self.isOpen, "the panel after a click on the item", PATIENCE)
            time.sleep(GRACE)

    def close(self):
        """By whatever means."""
        for means in (lambda: self.screen.key("Escape"), self.clickItem,
                      lambda: self.screen.click(*self.host.desk())):
            if not self.isOpen():
                return
            means()
            with contextlib.suppress(Missed):
                self.waitUntilClosed(5)
        if self.isOpen():
            self.restart()

    def waitUntilClosed(self, seconds=PATIENCE):
        waitFor(lambda: not self.isOpen(), "no panel any more", seconds)

    def start(self):
        self.app = desktop.Application(BUNDLE, self.folder / "console", self.folder / "errors")
        return self.app

    def restart(self):
        self.app.__exit__()
        time.sleep(1)
        self.start()
        time.sleep(3)

    def keep(self, name):
        self.screen.save(self.folder / f"{name}.png")

    # Seeing --------------------------------------------------------------------------------------

    def changedInBar(self, before):
        """The box of what differs in the items' part of the bar."""
        strip = self.host.itemStrip()
        now = picture.part(self.screen.take(), strip)
        box = picture.boxOf(picture.different(picture.part(before, strip), now))
        return box and Box(box.x + strip.x, box.y + strip.y, box.width, box.height)

    def panelBox(self):
        """The open panel's box: what differs from the screen without it, outside the bar."""
        outside = self.host.below()
        before = picture.part(self.rest, outside)

        def seen():
            now = picture.part(self.screen.takeStill(), outside)
            return picture.largestBlock(picture.different(before, now), 150)
        block = waitFor(seen, "a panel to be seen on the screen", PATIENCE)
        return Box(block.x + outside.x, block.y + outside.y, block.width, block.height)

    def gapToBar(self):
        bar = self.host.barBox()
        return self.opened.y - bar.bottom if self.host.bar == "top" else bar.y - self.opened.bottom

    # The claims, in the order in which they are tried --------------------------------------------

    def appears(self):
        """the item appears within 2 s"""
        begun = time.monotonic()
        self.start()
        waitFor(lambda: self.changedInBar(self.bare), "an item in the bar", PATIENCE)
        took = time.monotonic() - begun
        self.rest = self.screen.takeStill()
        self.item = self.changedInBar(self.bare)
        self.keep("item")
        check(took <= AT_ONCE, f"it came after {took:.1f} s")
        return f"{took:.1f} s, {self.item}"

    def told(self):
        """symbol and text, or symbol and tool tip"""
        if self.item.width > 2 * self.item.height and self.item.width > 40 * self.host.scale:
            return "text"
        self.screen.move(self.item.centre[0] - 1, self.item.centre[1])
        self.screen.move(*self.item.centre)
        outside = self.host.below()

        def tip():
            now = picture.part(self.screen.take(), outside)
            # The pointer itself is drawn by a nested compositor.
            changed = picture.different(picture.part(self.rest, outside), now)
            return changed.sum() > 600 * self.host.scale ** 2
        try:
            waitFor(tip, "a tool tip", PATIENCE)
            time.sleep(0.5)
            self.keep("tip")
        finally:
            self.park()
        return "tool tip"

    def opens(self):
        """the item opens the panel: by a click, or where the host wants it by a double click"""
        self.rest = self.screen.takeStill()
        self.clickItem()
        waitFor(self.isOpen, "the panel", PATIENCE)
        self.opened = self.panelBox()
        self.keep("panel")
        return str(self.opened)

    def single(self):
        """a single click is enough"""
        if self.host.clicks == 1:
            return None
        self.close()
        time.sleep(1)
        self.screen.click(*self.item.centre)
        try:
            waitFor(self.isOpen, "the panel", 3)
        finally:
            self.screen.key("Escape")
            time.sleep(1)
        return None

    def near(self):
        """the panel is at most 8 px from the bar"""
        gap = self.gapToBar() / self.host.scale
        check(-1 <= gap <= NEAR, f"{gap:.0f} px")
        return f"{gap:.0f} px"

    def over(self):
        """the panel is over the item, or flush with the screen's end"""
        middle = self.item.centre[0]
        area = self.host.area()
        end = (area.right - self.opened.right) / self.host.scale
        start = (self.opened.x - area.x) / self.host.scale
        isFlush = min(start, end) <= NEAR + 4 and not self.host.isExact
        check(isFlush or self.opened.x - 8 <= middle <= self.opened.right + 8,
              f"item at {middle}, panel {self.opened}")
        return f"{end:.0f} px from the screen's end"

    def whole(self):
        """the panel is whole on the screen"""
        wanted = [length * self.host.scale for length in PANEL]
        apart = [abs(self.opened.width - wanted[0]), abs(self.opened.height - wanted[1])]
        check(max(apart) <= 8 * self.host.scale, f"{self.opened}, not {wanted[0]}x{wanted[1]}")

    def unlisted(self):
        """no task bar lists the panel"""
        bar = self.host.barBox()
        self.park()
        time.sleep(0.3)
        self.waitStillOpen()
        shown = picture.part(self.screen.takeStill(), bar)
        self.close()
        self.park()
        gone = picture.part(self.screen.takeStill(), bar)
        # A clock goes on; only what comes and goes with the panel counts.
        changed = (picture.different(picture.part(self.rest, bar), shown)
                   & picture.different(shown, gone))
        lit = self.item.grown(24 * self.host.scale)
        changed[:, max(0, lit.x):lit.right] = False
        check(changed.sum() < 40 * self.host.scale ** 2,
              f"the bar changed: {picture.boxOf(changed)}")

    def waitStillOpen(self):
        check(self.isOpen(), "the panel is still open")

    def keyboard(self):
        """the keyboard is in the panel"""
        self.open()
        before = self.focused()
        self.screen.key("Tab")
        waitFor(lambda: self.focused() not in (None, before), "the focus moves on Tab", PATIENCE)
        return f"on {self.focused()!r}"

    def focused(self):
        wanted = desktop.Atspi.StateType.FOCUSED
        for role, name, accessible in self.app.elements():
            with contextlib.suppress(desktop.GLib.Error):
                if accessible.get_state_set().contains(wanted):
                    return role, name
        return None

    def pointer(self):
        """a press in the panel reaches what is under the pointer"""
        self.open()
        before = [self.app.isChecked("radio button", name) for name in MODES]
        # The modes' cells lie in the upper half; one of these four places is not the chosen mode.
        for share in (0.30, 0.34, 0.38, 0.42):
            for column in (0.3, 0.7):
                self.screen.click(int(self.opened.x + column * self.opened.width),
                                  int(self.opened.y + share * self.opened.height))
                time.sleep(0.3)
                if [self.app.isChecked("radio button", name) for name in MODES] != before:
                    return None
        raise Missed("another mode after presses on the modes")

    def desk(self):
        """a click on the bare desktop closes it"""
        self.open()
        self.screen.click(*self.host.desk())
        self.waitUntilClosed()

    def crossing(self):
        """the pointer may cross another window on its way into the panel"""
        self.withWindow()
        self.open()
        x, y = self.item.centre
        inner = self.opened.centre
        far = self.host.desk()
        for step in range(1, 21):
            self.screen.move(x + (far[0] - x) * step // 20, y + (far[1] - y) * step // 20)
        for step in range(1, 21):
            self.screen.move(far[0] + (inner[0] - far[0]) * step // 20,
                             far[1] + (inner[1] - far[1]) * step // 20)
        time.sleep(0.5)
        self.waitStillOpen()

    def withWindow(self):
        """Opens another program's window, and knows a place in it that no panel covers."""
        if self.other:
            return
        self.close()
        self.park()
        before = self.screen.takeStill()
        self.other = self.host.run("window", *self.host.window)
        outside = self.host.below()

        def appeared():
            now = picture.part(self.screen.take(), outside)
            return picture.largestBlock(
                picture.different(picture.part(before, outside), now), 60)
        waitFor(appeared, "another window", 15)
        time.sleep(1)
        box = appeared()
        self.inOther = box.x + outside.x + 12 * self.host.scale, box.y + outside.y + box.height // 2

    def window(self):
        """a click on another window closes it"""
        self.withWindow()
        self.open()
        check(not self.opened.holds(*self.inOther), "a place of the window beside the panel")
        self.screen.click(*self.inOther)
        self.waitUntilClosed()

    def escape(self):
        """Escape closes it"""
        self.open()
        self.screen.key("Escape")
        self.waitUntilClosed()

    def second(self):
        """a second click on the item closes it"""
        self.open()
        self.clickItem()
        self.waitUntilClosed()
        time.sleep(1)
        check(not self.isOpen(), "it stays closed")

    def menu(self):
        """the item's other button leads to the panel: at once, or by Open in a menu"""
        time.sleep(GRACE)
        self.park()
        before = self.screen.takeStill()
        self.clickItem(3)
        with contextlib.suppress(Missed):
            waitFor(self.isOpen, "the panel", 1.2)
            self.hasMenu = False
            return "at once"
        self.chooseOpen(before)
        waitFor(self.isOpen, "the panel after Open", PATIENCE)
        self.hasMenu = True
        return "by its menu"

    def chooseOpen(self, before):
        """Presses the first entry of the menu that has come up."""
        outside = self.host.below()

        def box():
            now = picture.part(self.screen.take(), outside)
            return picture.largestBlock(
                picture.different(picture.part(before, outside), now), 14 * self.host.scale)
        waitFor(box, "a menu", PATIENCE)
        time.sleep(0.4)
        self.keep("menu")
        menu = box()
        entry = min(menu.height // 2, self.host.menuEntry * self.host.scale)
        self.screen.click(menu.x + menu.width // 2, outside.y + menu.y + entry)

    def raised(self):
        """Open on an open panel leaves it open"""
        self.open()
        if not self.hasMenu:
            return "there is no menu here"
        self.park()
        before = self.screen.takeStill()
        self.clickItem(3)
        time.sleep(1)
        if not self.isOpen():
            self.screen.key("Escape")
            return "the press that would show the menu closes the panel"
        self.chooseOpen(before)
        time.sleep(1)
        check(self.isOpen(), "the panel is still open")
        return None

    def dark(self):
        """light and dark are followed while it is open"""
        self.host.setDark(False)
        self.open()
        time.sleep(1)
        inner = self.opened.grown(-20 * self.host.scale)

        def lightness():
            return picture.lightness(self.screen.take(), inner)
        try:
            waitFor(lambda: lightness() > 150, "a light panel at first", PATIENCE)
            self.host.setDark(True)
            waitFor(lambda: lightness() < 110, "a dark panel", PATIENCE)
            time.sleep(1)
            self.keep("dark")
        finally:
            self.host.setDark(False)
        waitFor(lambda: lightness() > 150, "a light panel again", PATIENCE)

    def back(self):
        """after the bar's restart the item is there and opens the panel"""
        self.close()
        self.park()
        self.host.stopBar()
        time.sleep(2)
        self.host.startBar()
        place = self.item

        def isThere():
            now = self.screen.take()
            lit = picture.part(now, place)[..., :3].astype(int)
            return lit.max() - lit.min() > 60
        waitFor(isThere, "the item in the bar again", 20)
        time.sleep(1)
        self.keep("restarted")
        self.open()

    def crisp(self):
        """the panel is drawn at the screen's own resolution"""
        found = picture.sharpness(self.screen.take(), self.opened.grown(-12 * self.host.scale))
        check(found > 0.25, f"sharpness {found:.2f}")
        return f"sharpness {found:.2f}"

    def others(self):
        """on a screen of another scale it is there too: near, over, whole and crisp; and back"""
        remarks = []
        for number in [*range(1, self.host.others + 1), 0]:
            self.close()
            self.host.lookAt(number)
            self.item = self.changedInBar(self.bare)
            check(self.item, f"an item on screen {number}")
            remarks += [f"screen {number}", self.opens()]
            self.keep(f"screen-{number}")
            for claim in (self.near, self.over, self.whole, self.crisp):
                remarks.append(claim())
        return ", ".join(filter(None, remarks))

    def ends(self):
        """the program ends when asked, and the item goes"""
        self.close()
        self.park()
        check(self.app.end() == 0, "its status is 0")

        def isGone():
            place = self.item
            changed = picture.different(picture.part(self.rest, place),
                                        picture.part(self.screen.take(), place))
            return changed.sum() > 20 * self.host.scale ** 2
        waitFor(isGone, "no item any more", PATIENCE)
