"""scripts/virtual-desktop: a desktop of its own for a command, and nothing left of it afterwards."""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import unittest

import claims

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMMAND = str(ROOT / "scripts" / "virtual-desktop")


def run(*words):
    return subprocess.run([COMMAND, *words], text=True, capture_output=True, timeout=60)


def marked(mark):
    """The processes whose environment holds the mark."""
    found = []
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            if mark in pathlib.Path("/proc", entry, "environ").read_bytes():
                found.append(int(entry))
        except OSError:
            pass
    return found


class VirtualDesktop(unittest.TestCase):
    def testEndsWithTheStatusOfItsCommand(self):
        self.assertEqual(run("sh", "-c", "exit 7").returncode, 7)
        self.assertEqual(run("sh", "-c", "kill -9 $$").returncode, 128 + signal.SIGKILL)

    def testACommandThatDoesNotExistIsNamed(self):
        done = run("no-such-command")
        self.assertEqual(done.returncode, 127)
        self.assertIn("no-such-command", done.stderr)

    def testWrongOptionsAreRefused(self):
        for words in ((), ("--size", "huge", "true"), ("--no-such-option", "true")):
            self.assertEqual(run(*words).returncode, 2, words)

    def testAPlainUserIsRootOfHisOwnProcesses(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        folder.chmod(0o755)
        command = shutil.copy(COMMAND, folder)
        other = {"user": "nobody", "group": "nogroup", "extra_groups": []} if os.getuid() == 0 else {}
        done = subprocess.run([command, "--root", "sh", "-c", "id -u; cat /proc/self/uid_map"],
                              text=True, capture_output=True, timeout=60, cwd="/", **other)
        if done.returncode == 77:
            self.skipTest("only root can: " + done.stdout.strip())
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(done.stdout.split()[0], "0")
        self.assertNotEqual(done.stdout.split()[2], "0", "the real root")

    def testHasWindowManagerTrayHostAndAccessibilityBus(self):
        done = run("sh", "-c", "xdotool search --class trayer && "
                   "xprop -root _NET_SUPPORTING_WM_CHECK && "
                   "dbus-send --session --print-reply --dest=org.a11y.Bus /org/a11y/bus "
                   "org.a11y.Bus.GetAddress")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertIn("window id #", done.stdout)
        self.assertIn("unix:path=", done.stdout)

    def testWithoutATrayThereIsNoTrayHost(self):
        self.assertNotEqual(run("--no-tray", "xdotool", "search", "--class", "trayer").returncode, 0)

    def testTwiceTheScaleIsTwiceThePixels(self):
        done = run("--size", "300x200", "--scale", "2", "sh", "-c",
                   "xdotool getdisplaygeometry; echo $QT_SCALE_FACTOR")
        self.assertEqual(done.stdout, "600 400\n2\n", done.stderr)

    def testFoldersAreItsOwnAndGoneAfterwards(self):
        names = ("HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME")
        done = run("sh", "-c", "; ".join(f'echo "${name}"; test -w "${name}"' for name in names))
        self.assertEqual(done.returncode, 0)
        folders = done.stdout.split()
        self.assertEqual(len(set(folders)), 5)
        for name, folder in zip(names, folders):
            self.assertNotEqual(folder, os.environ.get(name))
            self.assertFalse(os.path.exists(folder))

    def testAGivenHomeIsUsedAndKept(self):
        with tempfile.TemporaryDirectory() as home:
            run("--home", home, "sh", "-c", "touch $HOME/here $XDG_CONFIG_HOME/there")
            self.assertTrue(os.path.exists(f"{home}/here"))
            self.assertTrue(os.path.exists(f"{home}/.config/there"))

    def testLeavesNoProcessBehindNotEvenAStrayOne(self):
        mark = f"virtual-desktop-test-{os.getpid()}"
        done = subprocess.run([COMMAND, "sh", "-c", "(trap '' TERM; setsid sleep 300 &) ; echo ok"],
                              env=os.environ | {"MARK": mark}, text=True, capture_output=True,
                              timeout=60)
        self.assertEqual(done.stdout, "ok\n")
        self.assertEqual(marked(mark.encode()), [])

    def testASignalEndsEverythingToo(self):
        mark = f"virtual-desktop-test-signal-{os.getpid()}"
        running = subprocess.Popen([COMMAND, "sh", "-c", "echo up; sleep 300"], text=True,
                                   env=os.environ | {"MARK": mark}, stdout=subprocess.PIPE)
        with running:
            self.assertEqual(running.stdout.readline(), "up\n")
            running.send_signal(signal.SIGTERM)
            self.assertEqual(running.wait(30), 128 + signal.SIGTERM)
        self.assertEqual(marked(mark.encode()), [])


if __name__ == "__main__":
    claims.main()
