"""What tests of the real detector share: signals with knocks, and the program from outside."""

import array
import json
import math
import os
import pathlib
import random
import select
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import wave

SPANK = str(pathlib.Path(os.environ["BONKORA_BUNDLE"]) / "Contents" / "Resources" / "spank")
RATE = 48000


def knock(strength):
    """A thump of 180 a second that fades within 30 ms, and its click."""
    noise = random.Random(5)
    return [strength * math.exp(-i / RATE / 0.03) * math.cos(math.tau * 180 * i / RATE)
            + 0.3 * strength * math.exp(-i / RATE / 0.002) * noise.uniform(-1, 1)
            for i in range(RATE // 4)]


def signal_with(knocks, seconds):
    """Samples with a (time, strength) each, on soft noise."""
    noise = random.Random(3)
    samples = [noise.gauss(0, 0.001) for _ in range(int(seconds * RATE))]
    for at, strength in knocks:
        for i, value in enumerate(knock(strength)):
            samples[int(at * RATE) + i] += value
    return samples


def write_wav(path, samples):
    with wave.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        steps = (max(-32768, min(32767, round(32767 * s))) for s in samples)
        file.writeframes(array.array("h", steps).tobytes())


COUNTED = ("slap", "hit", "playing")    # letters that an application counts in plain lines


class DetectorCase(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="bonkora-detector-"))
        self.addCleanup(shutil.rmtree, self.folder, True)
        self.environment = {"PATH": "/usr/bin:/bin", "HOME": str(self.folder),
                            "XDG_CONFIG_HOME": str(self.folder), "SDL_AUDIODRIVER": "dummy"}

    def use_files_for_sound(self, heard=None):
        """What the microphone hears comes from the file, or is silence without end; what is played goes
        into one. Regular files or pipes: SDL 3 opens nothing else."""
        if heard is None:
            heard = self.folder / "silence.raw"
            with open(heard, "wb") as file:
                file.truncate(1 << 34)    # of holes: it takes no room
        self.environment.update(SDL_AUDIODRIVER="disk", SDL_DISKAUDIOFILEIN=str(heard),
                                SDL_DISKAUDIOFILE=str(self.folder / "played.raw"))

    def run_spank(self, *arguments, **more):
        return subprocess.run([SPANK, *map(str, arguments)], env=self.environment, timeout=60,
                              stdin=subprocess.DEVNULL, capture_output=True, text=True, **more)

    def start(self, *arguments, **more):
        more.setdefault("stdin", subprocess.DEVNULL)
        process = subprocess.Popen([SPANK, "--stdio", *map(str, arguments)], env=self.environment,
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, bufsize=0, **more)
        self.addCleanup(self.end, process)
        return process

    def end(self, process):
        if process.poll() is None:
            process.kill()
        process.wait()
        for stream in (process.stdin, process.stdout, process.stderr):
            if stream:
                stream.close()

    def event(self, process, seconds=10):
        ready, _, _ = select.select([process.stdout], [], [], seconds)
        self.assertTrue(ready, "no event came")
        line = process.stdout.readline()
        self.assertTrue(line.endswith(b"\n"), f"the detector ended: {process.poll()}")
        return json.loads(line)

    def configure(self, text):
        (self.folder / "Bonkora").mkdir(exist_ok=True)
        (self.folder / "Bonkora" / "spank.conf").write_text(text)

    def accelerometer(self, name="bma", rate=400):
        device = self.folder / "sys/bus/iio/devices/iio:device0"
        device.mkdir(parents=True)
        for file, text in {"name": name, "in_accel_x_raw": "0", "in_accel_y_raw": "0",
                           "in_accel_z_raw": "1000", "in_accel_scale": "0.00980665",
                           "sampling_frequency": str(rate),
                           "sampling_frequency_available": str(rate)}.items():
            (device / file).write_text(text + "\n")
        return device

    def resident(self, process):
        """Bytes of memory that the program holds."""
        pages = pathlib.Path(f"/proc/{process.pid}/statm").read_text().split()[1]
        return int(pages) * os.sysconf("SC_PAGE_SIZE")

    def pipe_for_device(self, path):
        """Stands in for a device that gives its signal as fast as it is read."""
        os.mkfifo(path)
        device = os.open(path, os.O_RDWR)
        self.addCleanup(os.close, device)
        return device

    def assert_stays_as_large(self, process, device, piece, knocks, first, pieces, growth):
        """Compares memory after the `first` pieces of signal with that after all `pieces`; at
        most `growth` bytes may come in between. Each piece waits until the knocks of the one
        before have been told, so that no sample is lost."""
        held = 0
        for number in range(pieces):
            os.write(device, piece)
            for _ in range(knocks):
                self.assertEqual(self.event(process)["type"], "slap")
            if number + 1 == first:
                held = self.resident(process)
        grown = self.resident(process) - held
        print(f"({held // 1024} kB, {grown // 1024:+d} kB) ", end="", file=sys.stderr)
        self.assertLessEqual(grown, growth)


@unittest.skipUnless(shutil.which("pulseaudio"), "pulseaudio is not installed")
class SoundServerCase(DetectorCase):
    """A sound server of the test's own, with a loudspeaker that leads nowhere."""

    def setUp(self):
        super().setUp()
        self.socket = self.folder / "sound"
        self.environment.update(SDL_AUDIODRIVER="pulseaudio", PULSE_SERVER=f"unix:{self.socket}",
                                XDG_RUNTIME_DIR=str(self.folder))
        self.start_server()

    def start_server(self):
        self.socket.unlink(missing_ok=True)
        self.server = subprocess.Popen(
            ["pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1",
             f"--load=module-native-protocol-unix socket={self.socket} auth-anonymous=yes",
             "--load=module-null-sink sink_name=loudspeaker"],
            env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        self.addCleanup(self.stop_server, self.server)
        deadline = time.monotonic() + 10
        while not self.socket.exists() and time.monotonic() < deadline:
            time.sleep(0.05)

    def stop_server(self, server):
        server.kill()
        server.wait()

    def control(self, *words):
        done = subprocess.run(["pactl", *words], env=self.environment, timeout=10, check=True,
                              capture_output=True, text=True)
        return done.stdout.strip()
