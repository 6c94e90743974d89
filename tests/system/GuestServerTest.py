"""The panel where the X server is a Wayland compositor's guest, as on GNOME: a grab of the pointer does
not see a press on what is not the server's own. No window manager helps here either."""

import ctypes
import ctypes.util
import os
import pathlib
import subprocess
import tempfile
import time
import unittest

import desktop

BUNDLE = pathlib.Path(os.environ["BONKORA_BUNDLE"])
GRABBED = 1    # seconds: longer than the panel goes on trying to grab


class OthersGrab:
    """The pointer in the hands of another program of the X server, for a with-block."""

    def __enter__(self):
        self.x = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.display = ctypes.c_void_p(self.x.XOpenDisplay(None))
        root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.display))
        isAsync, none, now = 1, ctypes.c_ulong(0), ctypes.c_ulong(0)
        status = self.x.XGrabPointer(self.display, root, 0, 0, isAsync, isAsync, none, none, now)
        assert status == 0, f"no grab: {status}"

    def __exit__(self, *_):
        self.x.XCloseDisplay(self.display)


class GuestServer(unittest.TestCase):
    def testAPressThatNoGrabSeesClosesThePanel(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        socket = folder / "wayland"
        socket.touch()
        bar = self.enterContext(subprocess.Popen([desktop.ROOT / "tests/support/status-notifier-bar"],
                                                 stdout=subprocess.PIPE, text=True))
        self.addCleanup(bar.kill)
        with OthersGrab():    # the panel's own is refused, and so sees as little as it would there
            app = self.enterContext(desktop.Application(
                BUNDLE, folder / "console", folder / "errors", WAYLAND_DISPLAY=str(socket)))
            bar.stdout.readline()
            subprocess.run([BUNDLE / "Contents/MacOS/bonkora"], check=True)
            app.find("push button", "Quit")
            time.sleep(GRABBED)
        desktop.xdotool("mousemove", "200", "600", "click", "1")
        app.waitUntilGone("push button", "Quit")


if __name__ == "__main__":
    unittest.main()
