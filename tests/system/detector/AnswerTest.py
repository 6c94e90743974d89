"""The sounds that the real detector answers with, and its end while it gets them ready."""

import array
import json
import math
import shutil
import signal
import subprocess
import time
import unittest
import wave

import claims
from detectors import COUNTED, DetectorCase, signal_with, write_wav


class AnswerTest(DetectorCase):
    """SDL's disk driver writes what the loudspeaker would get, two channels of 16 bits."""

    SOUND_RATE = 44100

    def setUp(self):
        super().setUp()
        self.errors = []

    def listen(self, knocks, *arguments):
        """Spans of sound as (begin, end, peak) in seconds of the file, and the bytes it held at
        each report."""
        write_wav(self.folder / "k.wav", signal_with(knocks, knocks[-1][0] + 0.3))
        self.environment.update(SDL_AUDIODRIVER="disk",
                                SDL_DISKAUDIOFILE=str(self.folder / "out.raw"))
        process = self.start("--sensor", f"file:{self.folder}/k.wav", *arguments)
        self.assertEqual(self.event(process)["type"], "ready")
        sizes = []
        for _ in knocks:
            event = self.event(process)
            while event["type"] == "error":
                self.errors.append(event["message"])
                event = self.event(process)
            self.assertEqual(event["type"], "slap")
            sizes.append((self.folder / "out.raw").stat().st_size)
        for line in process.stdout:
            self.errors.append(json.loads(line)["message"])
        self.assertEqual(process.wait(20), 0)
        samples = array.array("h", (self.folder / "out.raw").read_bytes())[::2]
        spans, silence = [], 0.03 * self.SOUND_RATE
        for i, value in enumerate(samples):
            if abs(value) > 30:
                if not spans or i - spans[-1][1] > silence:
                    spans.append([i, i, 0])
                spans[-1][1] = i
                spans[-1][2] = max(spans[-1][2], abs(value))
        return [(b / self.SOUND_RATE, e / self.SOUND_RATE, p / 32768) for b, e, p in spans], sizes

    def test_a_sound_begins_within_30_ms_of_the_report(self):
        spans, sizes = self.listen([(0.6, 0.5), (2.0, 0.5)])
        self.assertEqual(len(spans), 2)
        for span, size in zip(spans, sizes):
            # The driver hands its bytes on 4096 at a time, which is 23 ms.
            self.assertLess(span[0] - size / 4 / self.SOUND_RATE, 0.030 + 0.023)

    def test_each_mode_sounds_in_its_own_way(self):
        for mode, shortest, longest in ((["--halo"], 1.5, 4), (["--sexy"], 0.6, 1.1),
                                        ([], 0.2, 0.8)):
            spans, _ = self.listen([(0.6, 0.5)], *mode)
            self.assertEqual(len(spans), 1, mode)
            self.assertTrue(shortest < spans[0][1] - spans[0][0] < longest, (mode, spans))
            self.assertGreater(spans[0][2], 0.25)

    def test_without_scaling_all_sounds_are_full_and_with_it_force_is_loudness(self):
        knocks = [(0.6, 0.9), (2.0, 0.15)]
        spans, _ = self.listen(knocks)
        self.assertAlmostEqual(spans[0][2], 0.8, delta=0.05)
        self.assertAlmostEqual(spans[1][2], 0.8, delta=0.05)
        spans, _ = self.listen(knocks, "--volume-scaling")
        self.assertGreater(spans[0][2], 0.6)
        self.assertTrue(0.05 < spans[1][2] < 0.3, spans)

    def test_sounds_that_overlap_are_mixed(self):
        spans, _ = self.listen([(0.6, 0.5), (1.2, 0.5)], "--halo", "--cooldown", "100")
        self.assertEqual(len(spans), 1)
        self.assertGreater(spans[0][1] - spans[0][0], 2.5)

    def tone(self, name):
        with wave.open(str(name), "wb") as file:
            file.setparams((1, 2, 44100, 0, "NONE", ""))
            file.writeframes(array.array("h", (round(10000 * math.sin(i / 20))
                                               for i in range(44100 // 4))).tobytes())

    def test_a_folder_of_ones_own_is_played(self):
        own = self.folder / "my own"
        own.mkdir()
        self.tone(own / "beep.WAV")
        spans, _ = self.listen([(0.6, 0.5), (2.0, 0.5)], "--custom", own)
        self.assertEqual(len(spans), 2)
        for begin, end, peak in spans:
            self.assertAlmostEqual(end - begin, 0.25, delta=0.02)
            self.assertAlmostEqual(peak, 10000 / 32768, delta=0.02)

    @unittest.skipUnless(shutil.which("lame"), "lame is not installed")
    def test_mp3_is_played(self):
        own = self.folder / "mp3"
        own.mkdir()
        self.tone(self.folder / "beep.wav")
        subprocess.run(["lame", "--quiet", self.folder / "beep.wav", own / "beep.mp3"], check=True)
        spans, _ = self.listen([(0.6, 0.5)], "--custom", own)
        self.assertAlmostEqual(spans[0][1] - spans[0][0], 0.25, delta=0.08)
        self.assertAlmostEqual(spans[0][2], 10000 / 32768, delta=0.05)

    def test_a_folder_without_sounds_is_an_error_and_the_default_set_answers(self):
        empty = self.folder / "empty"
        empty.mkdir()
        (empty / "broken.mp3").write_text("this is no music")
        for folder in (empty, self.folder / "missing"):
            self.errors.clear()
            spans, _ = self.listen([(0.6, 0.5)], "--custom", folder)
            self.assertIn(str(folder), self.errors[0])
            self.assertAlmostEqual(spans[0][2], 0.8, delta=0.05)

    def test_without_a_sound_device_it_counts_on_with_one_line(self):
        self.environment["SDL_AUDIODRIVER"] = "no such driver"
        write_wav(self.folder / "k.wav", signal_with([(0.5, 0.5)], 1))
        done = self.run_spank("--stdio", "--sensor", f"file:{self.folder}/k.wav")
        self.assertEqual(done.stdout.count('"slap"'), 1)
        self.assertEqual(done.stderr.count("\n"), 1)
        self.assertIn("no sound device", done.stderr)
        for word in COUNTED:
            self.assertNotIn(word, done.stderr.lower())

    def test_a_small_file_of_hours_takes_little_memory(self):
        own = self.folder / "hours"
        own.mkdir()
        with wave.open(str(own / "silence.wav"), "wb") as file:
            file.setparams((1, 1, 4000, 0, "NONE", ""))
            file.writeframes(bytes([128]) * 4000 * 3600)
        self.use_files_for_sound()
        process = self.start("--sensor", "microphone", "--custom", own)
        self.assertEqual(self.event(process)["type"], "ready")
        time.sleep(1.5)
        self.assertLess(self.resident(process), 100 * 1024 * 1024)

    def test_it_ends_soon_after_sigterm_at_any_moment_of_its_start(self):
        own = self.folder / "many"
        own.mkdir()
        for number in range(20000):
            (own / f"{number}.mp3").touch()
        with wave.open(str(own / "0.wav"), "wb") as file:
            file.setparams((1, 1, 4000, 0, "NONE", ""))
            file.writeframes(bytes([128]) * 4000 * 3600)
        self.use_files_for_sound()
        for delay in (0.03, 0.06, 0.1, 0.2, 0.4, 0.8):
            times = []
            # A tenth of a second, and a little for the clock. A busy machine may add to one try, or
            # to several, but what takes longer by itself takes it every time.
            while min(times, default=math.inf) > 0.15 and len(times) < 5:
                process = self.start("--sensor", "microphone", "--custom", own)
                time.sleep(delay)
                begin = time.monotonic()
                process.terminate()
                self.assertIn(process.wait(10), (0, -signal.SIGTERM))
                times.append(time.monotonic() - begin)
            self.assertLess(min(times), 0.15, (delay, times))

    def test_mute_keeps_quiet(self):
        self.configure("mute = yes\n")
        self.environment["SDL_AUDIODRIVER"] = "no such driver"
        write_wav(self.folder / "k.wav", signal_with([(0.5, 0.5)], 1))
        done = self.run_spank("--stdio", "--sensor", f"file:{self.folder}/k.wav")
        self.assertEqual(done.stdout.count('"slap"'), 1)
        self.assertEqual(done.stderr, "")


if __name__ == "__main__":
    claims.main()
