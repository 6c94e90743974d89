"""Kills the runner, its elevated side or the command at random moments, and looks for what is left.

KillStorm.py HELPERS [--kills N] [--plain] [--crowd] [--jobs N] [--seed N] [--late-allowed SHARE]

HELPERS is the folder of osascript and bonkora-elevated. Started by root, the command runs as root, in
the PID namespace; --plain makes everything an ordinary user's. --crowd fills the machine with
short-lived processes meanwhile. A process belongs to a run when it has the run's mark in its
environment, or the run's pipe open: so none gets away by taking another session, parent or user. Ends
with status 1 when one was left behind, or when more than the share that may be late was gone later than
half a second after the signal."""

import argparse
import collections
import concurrent.futures
import os
import pathlib
import random
import select
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time

NOBODY = 65534
LIMIT = 0.5     # seconds, for all to be gone after the signal
PATIENCE = 10   # seconds, after which what is still there counts as left behind

# Each keeps descriptor 9, the run's pipe, open. $0 is the folder with these scripts.
SCRIPTS = {
    "stay": "while :; do sleep 100; done",
    "deaf": "trap '' TERM INT HUP QUIT; while :; do sleep 100; done",
    "session": "setsid sh $D/deaf & while :; do sleep 100; done",
    "orphan": "(setsid sh -c '(sh $D/deaf &)' &); while :; do sleep 100; done",
    "chain": "trap '' TERM INT HUP QUIT; n=${1:-60}; [ $n -le 1 ] || sh $D/chain $((n - 1)) & "
             "while :; do sleep 100; done",
    "forker": "while :; do sh -c 'trap \"\" TERM; sleep 0.05' & sleep 0.01; done",
    "other-user": "setpriv --reuid=1 --regid=1 --clear-groups sh $D/deaf & while :; do sleep 100; done",
    "quick": "sleep 0.03; (setsid sh $D/deaf &)",
}
ENDINGS = {
    "runner": ["TERM", "INT", "QUIT", "KILL", "STOP+KILL", "reader"],
    "elevated": ["TERM", "INT", "QUIT", "KILL", "STOP+KILL"],
    "command": ["KILL", "STOP+KILL"],
}


def children(process):
    try:
        return [int(n) for n in pathlib.Path(f"/proc/{process}/task/{process}/children")
                .read_text().split()]
    except OSError:
        return []


def commandLine(process):
    """Empty when it has gone."""
    try:
        return pathlib.Path(f"/proc/{process}/cmdline").read_bytes()
    except OSError:
        return b""


def marked(mark):
    """The living processes that have the mark in their environment."""
    found = []
    for name in os.listdir("/proc"):
        if name.isdigit():
            try:
                with open(f"/proc/{name}/environ", "rb") as file:
                    if mark in file.read():
                        found.append(int(name))
            except OSError:
                pass
    return found


def send(process, number):
    try:
        os.kill(process, number)
    except ProcessLookupError:
        pass


class Run:
    def __init__(self, number, options, folder):
        self.choice = random.Random(options.seed * 1_000_003 + number)
        self.options = options
        self.folder = folder
        self.mark = f"HOME=/bonkora-storm-{os.getpid()}-{number}".encode()
        kinds = [kind for kind in SCRIPTS if kind != "other-user" or not options.plain]
        self.kinds = self.choice.choices(kinds, k=self.choice.randint(1, 3))
        self.target = self.choice.choice(list(ENDINGS))
        self.ending = self.choice.choice(ENDINGS[self.target])
        self.fifo = f"{folder}/pipe-{number}"

    def __str__(self):
        return f"{self.ending} to the {self.target} of {'+'.join(self.kinds)}"

    def start(self):
        os.mkfifo(self.fifo)
        os.chmod(self.fifo, 0o666)
        self.pipe = os.open(self.fifo, os.O_RDONLY | os.O_NONBLOCK)
        holder = os.open(self.fifo, os.O_WRONLY)     # until the command has it open
        parts = "".join(f"sh $D/{kind} & " for kind in self.kinds[1:])
        command = (f"exec 9>{self.fifo}; D={self.folder}; export D; {parts}"
                   f"echo; . $D/{self.kinds[0]}")
        script = 'do shell script "' + command.replace("\\", "\\\\").replace('"', '\\"') + '"'
        more = {"user": NOBODY, "group": NOBODY, "extra_groups": []} if (
            self.options.plain and os.getuid() == 0) else {}
        name, value = self.mark.decode().split("=")
        self.runner = subprocess.Popen(
            [f"{self.options.helpers}/osascript", "-e", script], stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, cwd="/",
            env={"PATH": "/usr/bin:/bin", name: value}, **more)
        return holder

    def victim(self):
        """The process to be killed, once it is there; nothing when the run is over by itself."""
        end = time.monotonic() + PATIENCE
        while time.monotonic() < end and self.runner.poll() is None:
            if self.target == "runner":
                return self.runner.pid
            for elevated in children(self.runner.pid):
                if self.target == "elevated":
                    return elevated
                # The command's shell, or in between the first process of the namespace. Its name
                # is looked at last: a command that is not there yet has the name too, and no
                # children.
                for child in children(elevated):
                    inner = children(child)
                    isFirst = b"bonkora-elevated" in commandLine(child)
                    return inner[0] if inner and isFirst else child
            time.sleep(0.001)
        return None

    def go(self):
        """How long it took until all was gone, in seconds; None when something was left behind."""
        holder = self.start()
        if self.choice.random() < 0.7:
            select.select([self.runner.stdout], [], [], PATIENCE)
        time.sleep(self.choice.uniform(0, 0.06))
        victim = self.victim()
        if self.ending == "reader":
            self.runner.stdout.close()
        elif victim is not None:
            for name in self.ending.split("+"):
                send(victim, signal.Signals["SIG" + name])
                if name == "STOP":
                    time.sleep(self.choice.uniform(0, 0.02))
        begun = time.monotonic()
        os.close(holder)
        left = True
        while left and time.monotonic() - begun < PATIENCE:
            # The pipe ends when the last of the command's processes has.
            try:
                ended = os.read(self.pipe, 1) == b""
            except BlockingIOError:
                ended = False
            self.runner.poll()
            if ended:
                gone = time.monotonic() - begun
                left = marked(self.mark)
                if not left:
                    break
            time.sleep(0.005)
        if left:
            print("LEFT BEHIND:", self, {p: commandLine(p) for p in marked(self.mark)}, flush=True)
            for process in marked(self.mark):
                send(process, signal.SIGKILL)
            gone = None
        elif gone > LIMIT:
            print(f"late: {self}: {gone:.2f} s", flush=True)
        self.runner.kill()
        self.runner.wait()
        if not self.runner.stdout.closed:
            self.runner.stdout.close()
        os.close(self.pipe)
        os.unlink(self.fifo)
        return gone


def crowd(stop):
    while not stop.is_set():
        subprocess.run(["/bin/true"], check=False)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("helpers")
    parser.add_argument("--kills", type=int, default=200)
    parser.add_argument("--plain", action="store_true")
    parser.add_argument("--crowd", action="store_true")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--late-allowed", type=float, default=0.001)
    options = parser.parse_args()
    options.plain = options.plain or os.getuid() != 0   # nobody else can change the user
    # A shell's job in the background ignores these, and the runner would inherit that.
    signal.signal(signal.SIGINT, signal.default_int_handler)
    signal.signal(signal.SIGQUIT, signal.SIG_DFL)

    with tempfile.TemporaryDirectory() as folder:
        os.chmod(folder, 0o755)
        for name, text in SCRIPTS.items():
            pathlib.Path(folder, name).write_text(text + "\n")
        # Where any user may run them, wherever the build is.
        for name in ("osascript", "bonkora-elevated"):
            shutil.copy(pathlib.Path(options.helpers, name), folder)
        options.helpers = folder
        stop = threading.Event()
        others = [threading.Thread(target=crowd, args=[stop]) for _ in range(2 * options.crowd)]
        for other in others:
            other.start()
        with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
            times = list(pool.map(lambda n: Run(n, options, folder).go(), range(options.kills)))
        stop.set()
        for other in others:
            other.join()

    gone = sorted(t for t in times if t is not None)
    late = sum(t > LIMIT for t in gone)
    left = len(times) - len(gone)
    load = os.getloadavg()[0]
    share = collections.Counter(min(int(t * 10), 10) for t in gone)
    print("gone within", ", ".join(f"{(t + 1) / 10:.1f} s: {share[t]}" if t < 10 else
                                    f"later: {share[t]}" for t in sorted(share)))
    print(f"{len(times)} kills {'as a plain user' if options.plain else 'as root'}"
          f"{', in a crowd' if options.crowd else ''}, {options.jobs} at a time, load {load:.1f}: "
          f"{left} left behind, {late} later than {LIMIT} s; "
          f"median {gone[len(gone) // 2]:.3f} s, longest {gone[-1]:.3f} s")
    return 1 if left or late > options.late_allowed * len(times) else 0


if __name__ == "__main__":
    sys.exit(main())
