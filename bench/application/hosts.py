"""The two kinds of host that a tray item stands in: the session bus's watcher, and a tray that embeds
its window. Both start a program, tell how long its item took, and open or close its panel."""

import select
import subprocess
import sys
import threading
import time

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib
from Xlib import X, display, error

PATIENCE = 60    # a program that is counted instruction by instruction takes its time


class Host:
    """What both have in common: the screen, and the windows on it."""

    def __init__(self):
        self.display = display.Display()
        self.root = self.display.screen().root
        self.list = self.display.intern_atom("_NET_CLIENT_LIST")

    def windows(self):
        """How many windows the window manager knows: a panel is one, an item none."""
        found = self.root.get_full_property(self.list, X.AnyPropertyType)
        return len(found.value) if found else 0

    def toggle(self, child):
        """Opens or closes the panel, and waits until it has happened."""
        before = self.windows()
        self.activate(child)
        deadline = time.monotonic() + PATIENCE
        while self.windows() == before:
            if time.monotonic() > deadline:
                sys.exit("the panel does not follow its item")
            time.sleep(0.02)

    def launch(self, command):
        self.forget()
        begun = time.monotonic()
        child = subprocess.Popen([str(word) for word in command], stdout=subprocess.DEVNULL,
                                 stderr=subprocess.PIPE, text=True)
        moment = self.awaitItem(begun + PATIENCE)
        if moment is None:
            child.kill()
            sys.exit(f"{command[0]} got no item: {child.stderr.read()}")
        return child, moment - begun


class BusHost(Host):
    """The session's watcher of tray items, and the only host: it is told the moment an item registers."""

    NAME = "org.kde.StatusNotifierWatcher"

    def __init__(self):
        super().__init__()
        dbus.mainloop.glib.threads_init()
        dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
        self.registered = None
        self.event = threading.Event()
        self.bus = dbus.SessionBus()
        self.name = dbus.service.BusName(self.NAME, self.bus)
        self.service = watcher(self)
        threading.Thread(target=GLib.MainLoop().run, daemon=True).start()

    def forget(self):
        self.event.clear()

    def awaitItem(self, deadline):
        return self.registered[0] if self.event.wait(deadline - time.monotonic()) else None

    def activate(self, _):
        item = self.bus.get_object(self.registered[1], "/StatusNotifierItem", introspect=False)
        item.Activate(640, 10, dbus_interface="org.kde.StatusNotifierItem")


def watcher(host):
    class Service(dbus.service.Object):
        @dbus.service.method(host.NAME, in_signature="s", sender_keyword="sender")
        def RegisterStatusNotifierItem(self, item, sender=None):
            host.registered = (time.monotonic(), item if item[0] != "/" else sender)
            host.event.set()

        @dbus.service.method(host.NAME, in_signature="s")
        def RegisterStatusNotifierHost(self, name):
            pass

        # Qt reads only properties that the introspection names.
        @dbus.service.method(dbus.INTROSPECTABLE_IFACE, out_signature="s",
                             path_keyword="path", connection_keyword="connection")
        def Introspect(self, path=None, connection=None):
            text = super().Introspect(path, connection)
            return text.replace(f'<interface name="{host.NAME}">', f'''<interface name="{host.NAME}">
                <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
                <property name="ProtocolVersion" type="i" access="read"/>
                <property name="RegisteredStatusNotifierItems" type="as" access="read"/>''')

        @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
        def Get(self, interface, key):
            return self.GetAll(interface)[key]

        @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
        def GetAll(self, interface):
            return {"IsStatusNotifierHostRegistered": True, "ProtocolVersion": dbus.Int32(0),
                    "RegisteredStatusNotifierItems": dbus.Array([], signature="s")}

    return Service(host.bus, "/StatusNotifierWatcher")


class EmbeddingHost(Host):
    """The tray that the virtual desktop starts: an item is there once the tray has taken its window."""

    def __init__(self):
        super().__init__()
        self.root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.display.sync()
        self.windowOf = None

    def forget(self):
        self.display.sync()
        while self.display.pending_events():
            self.display.next_event()

    def awaitItem(self, deadline):
        while time.monotonic() < deadline:
            select.select([self.display], [], [], 0.1)
            while self.display.pending_events():
                event = self.display.next_event()
                moment = time.monotonic()
                if event.type == X.ReparentNotify and self.isOfTheTray(event.parent):
                    self.windowOf = event.window
                    return moment
        return None

    def isOfTheTray(self, parent):
        """The window manager's frames lie on the screen itself, the tray's boxes in the tray."""
        try:
            return parent != self.root and parent.query_tree().parent != self.root
        except error.XError:
            return False    # it has gone already

    def activate(self, _):
        subprocess.run(["xdotool", "mousemove", "--window", str(self.windowOf.id), "8", "8",
                        "click", "1"], check=True)
