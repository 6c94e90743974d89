"""An hour of a microphone's signal leave the detector no larger."""

import array
import random
import unittest

from detectors import RATE, DetectorCase, knock


class HourOfSoundTest(DetectorCase):
    def test_an_hour_of_a_microphone(self):
        self.configure("mute = yes\n")    # the loudspeaker has no clock here
        node = self.folder / "microphone"
        device = self.pipe_for_device(node)
        self.environment.update(SDL_AUDIODRIVER="disk", SDL_DISKAUDIODELAY="0",
                                SDL_DISKAUDIOFILEIN=str(node), SDL_DISKAUDIOFILE="/dev/null")
        process = self.start("--sensor", "microphone", "--cooldown", "100")
        self.assertEqual(self.event(process)["type"], "ready")

        # Shorter than the second that the detector keeps unread.
        noise = random.Random(1)
        piece = array.array("f", (noise.gauss(0, 0.001) for _ in range(RATE // 2)))
        for i, value in enumerate(knock(0.5)):
            piece[RATE // 8 + i] += value
        # Three buffers grow to the longest wait for the processor that there has been, up to the
        # second that is kept unread: twice a number, and once a reading of three; a buffer may
        # hold twice what it needs. Three bytes lost with each 256 samples would be more.
        buffers = 2 * RATE * (4 + 4 + 12)
        self.assert_stays_as_large(process, device, piece.tobytes(), 1, 120, 3600 * 2, buffers)


if __name__ == "__main__":
    unittest.main()
