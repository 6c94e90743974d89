"""The detector beside its own loudspeaker: a sound server of the test's own, whose microphone hears
whatever is played."""

import array
import math
import random
import select
import subprocess
import time
import wave

import claims
from detectors import SoundServerCase, signal_with, write_wav

SOUND_RATE = 44100


def drum_loop(seconds):
    """A drum four times a second, each loud and as dull as a blow on the case."""
    noise = random.Random(4)
    samples = [0.0] * int(seconds * SOUND_RATE)
    for number in range(int(4 * seconds)):
        first = number * SOUND_RATE // 4
        hertz, rattle = noise.uniform(80, 200), noise.choice((0.02, 0.3))
        for i in range(min(SOUND_RATE // 4, len(samples) - first)):
            samples[first + i] = (0.6 * math.exp(-i / SOUND_RATE / 0.05) *
                                  (math.sin(math.tau * hertz * i / SOUND_RATE)
                                   + rattle * noise.gauss(0, 1)))
    return samples


class OwnVoiceTest(SoundServerCase):
    def setUp(self):
        super().setUp()
        self.control("load-module", "module-remap-source", "source_name=microphone",
                     "master=loudspeaker.monitor", "source_properties=device.description=Microphone")
        self.own = self.folder / "own"
        self.own.mkdir()
        with wave.open(str(self.own / "loop.wav"), "wb") as file:
            file.setparams((1, 2, SOUND_RATE, 0, "NONE", ""))
            file.writeframes(array.array("h", (max(-32767, min(32767, round(32767 * sample)))
                                               for sample in drum_loop(3))).tobytes())
        self.configure("device = Microphone\n")

    def strike(self, strength):
        """A blow on the case, as the microphone hears it."""
        write_wav(self.folder / "blow.wav", signal_with([(0.05, strength)], 0.4))
        subprocess.run(["paplay", self.folder / "blow.wav"], env=self.environment, timeout=10,
                       check=True)

    def told(self, process, seconds):
        """The amplitudes of the knocks told within that time."""
        amplitudes, end = [], time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            if select.select([process.stdout], [], [], left)[0]:
                event = self.event(process)
                if event["type"] == "slap":
                    amplitudes.append(event["amplitude"])
        return amplitudes

    def test_drums_that_it_plays_itself_do_not_count(self):
        process = self.start("--sensor", "microphone", "--custom", self.own, "--cooldown", "300")
        self.assertEqual(self.event(process)["type"], "ready")
        # The server begins with blocks of two seconds, into which it puts nothing more for those who
        # have read them.
        self.assertEqual(self.told(process, 4), [])
        for _ in range(2):
            self.strike(0.5)
            self.assertEqual(len(self.told(process, 4.5)), 1)


if __name__ == "__main__":
    claims.main()
