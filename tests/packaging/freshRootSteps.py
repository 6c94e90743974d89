"""The user's steps in FreshRootTest.py, on the virtual desktop: open, Start, a slap, Stop, Quit."""

import sys

import desktop


def detectors():
    """The detectors of the whole machine, root's too."""
    return [words for _, state, words in desktop.processes().values()
            if words and words[0].endswith("/spank") and state != "Z"]


with desktop.Application("Bonkora.app", "console.txt", "errors.txt") as app:
    try:
        app.openPanel()
        app.press("push button", "Start")
        app.waitForLine("👋 Slap #1 ", seconds=40)
        desktop.check(len(detectors()) == 1, "one detector runs")
        app.press("push button", "Stop")
        app.waitForLine("⏹ Spank process ended with code: ")
        desktop.waitFor(lambda: not detectors(), "the end of the detector")
        app.press("push button", "Quit")
        app.process.wait(desktop.PATIENCE)
    except desktop.Missed as missed:
        print(*app.lines(), app.errors.read_text(errors="replace"), sep="\n", file=sys.stderr)
        sys.exit(str(missed))
