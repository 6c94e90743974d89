"""Pictures of the outer screen, and what differs between two of them. Coordinates are pixels of the
screen. One thread only."""

import ctypes
import ctypes.util
import os
import subprocess
import time
from typing import NamedTuple

import numpy

ALL_PLANES = 0xFFFFFFFFFFFFFFFF
Z_PIXMAP = 2
NOTICEABLE = 12    # by how much one channel differs where two pixels count as different


class Box(NamedTuple):
    x: int
    y: int
    width: int
    height: int

    @property
    def right(self):
        return self.x + self.width

    @property
    def bottom(self):
        return self.y + self.height

    @property
    def centre(self):
        return self.x + self.width // 2, self.y + self.height // 2

    def holds(self, x, y):
        return self.x <= x < self.right and self.y <= y < self.bottom

    def grown(self, by):
        by = round(by)
        return Box(self.x - by, self.y - by, self.width + 2 * by, self.height + 2 * by)

    def __str__(self):
        return f"{self.width}x{self.height} at {self.x},{self.y}"


class _Image(ctypes.Structure):
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("offset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.c_void_p)]


class Screen:
    """The outer X screen, which shows what a person would see."""

    def __init__(self, display):
        self.display = display
        self.hold = 0    # seconds for which a click holds the button down
        self.x = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
        self.x.XOpenDisplay.restype = ctypes.c_void_p
        self.x.XDefaultRootWindow.restype = ctypes.c_ulong
        self.x.XGetImage.restype = ctypes.POINTER(_Image)
        self.handle = ctypes.c_void_p(self.x.XOpenDisplay(display.encode()))
        self.root = ctypes.c_ulong(self.x.XDefaultRootWindow(self.handle))
        self.width = self.x.XDisplayWidth(self.handle, 0)
        self.height = self.x.XDisplayHeight(self.handle, 0)

    def take(self):
        """The picture as an array height x width x (blue, green, red, unused)."""
        image = self.x.XGetImage(self.handle, self.root, 0, 0, self.width, self.height,
                                 ctypes.c_ulong(ALL_PLANES), Z_PIXMAP)
        size = self.width * self.height * 4
        pixels = numpy.frombuffer(ctypes.string_at(image.contents.data, size), numpy.uint8)
        self.x.XDestroyImage(image)
        return pixels.reshape(self.height, self.width, 4)

    def takeStill(self, calm=0.5, seconds=20):
        """The picture once nothing has changed for that long; the last one if that never comes."""
        deadline = time.monotonic() + seconds
        last, since = self.take(), time.monotonic()
        while time.monotonic() < deadline and time.monotonic() - since < calm:
            time.sleep(0.1)
            now = self.take()
            if different(last, now).sum() > 4:
                last, since = now, time.monotonic()
        return last

    def save(self, path, picture=None):
        picture = self.take() if picture is None else picture
        subprocess.run(["convert", "-size", f"{self.width}x{self.height}", "-depth", "8", "bgra:-",
                        "-alpha", "off", str(path)], input=picture.tobytes(), check=True)

    def xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], check=True, stdout=subprocess.DEVNULL,
                       env=os.environ | {"DISPLAY": self.display})

    def move(self, x, y):
        self.xdotool("mousemove", x, y)

    def click(self, x, y, button=1):
        # Two steps: a compositor that is shown in a window learns of a place by motion alone.
        self.xdotool("mousemove", x - 1, y)
        self.xdotool("mousemove", x, y)
        time.sleep(0.1)
        self.xdotool("mousedown", button)
        time.sleep(self.hold)
        self.xdotool("mouseup", button)

    def key(self, *names):
        self.xdotool("key", *names)


def different(one, other):
    """Which pixels differ noticeably, as an array of truth values."""
    apart = numpy.abs(one[..., :3].astype(numpy.int16) - other[..., :3].astype(numpy.int16))
    return apart.max(axis=2) > NOTICEABLE


def part(picture, box):
    return picture[max(0, box.y):box.bottom, max(0, box.x):box.right]


def boxOf(truths, least=1):
    """The box around everything true, or nothing."""
    rows = numpy.flatnonzero(truths.sum(axis=1) >= least)
    columns = numpy.flatnonzero(truths.sum(axis=0) >= least)
    if not len(rows) or not len(columns):
        return None
    return Box(int(columns[0]), int(rows[0]), int(columns[-1] - columns[0] + 1),
               int(rows[-1] - rows[0] + 1))


def largestBlock(truths, least):
    """The box of a large block of differences, at least that wide and high; nothing without one.
    Thin things, such as a tool tip or an item that is lit, are left out."""
    columns = truths.sum(axis=0) >= least
    run = _longestRun(columns)
    if run is None or run[1] - run[0] < least:
        return None
    rows = truths[:, run[0]:run[1]].sum(axis=1) >= 0.5 * (run[1] - run[0])
    rise = _longestRun(rows)
    if rise is None:
        return None
    return Box(run[0], rise[0], run[1] - run[0], rise[1] - rise[0])


def _longestRun(truths):
    edges = numpy.flatnonzero(numpy.diff(numpy.concatenate(([0], truths.astype(numpy.int8), [0]))))
    runs = list(zip(edges[::2], edges[1::2]))
    if not runs:
        return None
    first, end = max(runs, key=lambda run: run[1] - run[0])
    return int(first), int(end)


def lightness(picture, box):
    """The mean over the box, 0 to 255."""
    return float(part(picture, box)[..., :3].mean())


def sharpness(picture, box):
    """How much of the detail is too fine for half the resolution: about nought for a picture that
    was drawn at half its size and enlarged."""
    grey = part(picture, box)[..., :3].astype(numpy.float32).mean(axis=2)
    grey = grey[:grey.shape[0] // 4 * 4, :grey.shape[1] // 4 * 4]
    # One of the four ways in which pairs may fall together fits an enlarged picture.
    finest = []
    for dx in (0, 1):
        for dy in (0, 1):
            shifted = grey[dy:grey.shape[0] - 2 + dy, dx:grey.shape[1] - 2 + dx]
            pairs = shifted.reshape(shifted.shape[0] // 2, 2, shifted.shape[1] // 2, 2)
            inside = numpy.abs(pairs[:, :, :, 0] - pairs[:, :, :, 1]).mean()
            finest.append(inside)
    steps = numpy.abs(numpy.diff(grey, axis=1)).mean()
    return float(min(finest) / max(steps, 0.001))
