"""The real detector, from outside: its command line, report, sensors, sound and end."""

import array
import json
import math
import os
import pathlib
import pwd
import shutil
import signal
import subprocess
import time
import unittest
import wave

import claims
from detectors import RATE, DetectorCase, signal_with, write_wav

COUNTED = ("slap", "hit", "playing")    # letters that an application counts in plain lines


class DetectorTest(DetectorCase):
    def setUp(self):
        super().setUp()
        self.errors = []

    # Command line

    def test_wrong_command_lines_show_the_usage_and_give_status_2(self):
        for arguments in (["--loud"], ["--cooldown"], ["--cooldown", "soon"], ["--cooldown", "-1"],
                          ["--cooldown", "99999999999"], ["--min-amplitude", "nan"],
                          ["--min-amplitude", "-0.1"], ["--sexy", "--halo"],
                          ["--sensor", "camera"], ["slap"]):
            done = self.run_spank("--stdio", *arguments)
            self.assertEqual(done.returncode, 2, arguments)
            self.assertEqual(done.stdout, "")
            self.assertIn("Usage: spank", done.stderr)
            for word in COUNTED:
                self.assertNotIn(word, done.stderr.lower(), arguments)

    def test_help_and_version_go_to_standard_output(self):
        self.assertIn("--min-amplitude", self.run_spank("--help").stdout)
        self.assertRegex(self.run_spank("--version").stdout, r"^spank \d+\.\d+\.\d+\n$")

    # Recordings

    def test_a_recording_gives_its_knocks_and_status_0(self):
        write_wav(self.folder / "k.wav", signal_with([(1, 0.5), (2, 0.2), (3, 0.8)], 4))
        done = self.run_spank("--stdio", "--as-fast-as-possible", "--sensor",
                              f"file:{self.folder}/k.wav")
        self.assertEqual(done.returncode, 0)
        events = [json.loads(line) for line in done.stdout.splitlines()]
        self.assertEqual([e["type"] for e in events], ["ready", "slap", "slap", "slap"])
        soft, hard = events[2]["amplitude"], events[3]["amplitude"]
        self.assertLess(soft, events[1]["amplitude"])
        self.assertLess(events[1]["amplitude"], hard)

    def test_a_recording_is_read_in_its_own_time_and_each_line_comes_at_once(self):
        write_wav(self.folder / "k.wav", signal_with([(0.5, 0.5), (2.0, 0.5)], 2.5))
        process = self.start("--sensor", f"file:{self.folder}/k.wav")
        self.assertEqual(self.event(process)["type"], "ready")
        begin = time.monotonic()
        self.assertEqual(self.event(process)["type"], "slap")
        self.assertAlmostEqual(time.monotonic() - begin, 0.5, delta=0.3)
        self.assertEqual(self.event(process)["type"], "slap")
        self.assertAlmostEqual(time.monotonic() - begin, 2.0, delta=0.3)

    def test_bad_recordings_are_an_error_with_a_reason_and_once_gives_status_1(self):
        write_wav(self.folder / "whole.wav", signal_with([(0.5, 0.5)], 1))
        whole = (self.folder / "whole.wav").read_bytes()
        (self.folder / "cut.wav").write_bytes(whole[:5000])
        (self.folder / "text.wav").write_text("hello\n")
        (self.folder / "empty.wav").write_bytes(b"")
        (self.folder / "bad.csv").write_text("0,0,0,1\n0.01,0,zero,1\n")
        os.mkfifo(self.folder / "pipe.wav")
        for name, reason in {"cut.wav": "no whole WAV", "text.wav": "no whole WAV",
                             "empty.wav": "no whole WAV", "bad.csv": "line 2",
                             "missing.wav": "no such file", "pipe.wav": "cannot be read"}.items():
            done = self.run_spank("--stdio", "--once", "--sensor", f"file:{self.folder}/{name}")
            self.assertEqual(done.returncode, 1, name)
            event = json.loads(done.stdout)
            self.assertEqual(event["type"], "error")
            self.assertIn(reason, event["message"])

    # Accelerometers

    def test_without_a_sensor_it_says_what_it_looked_for_and_waits_for_one(self):
        self.environment["SDL_AUDIODRIVER"] = "no such driver"
        process = self.start("--sysfs", self.folder / "sys")
        event = self.event(process)
        self.assertEqual(event["type"], "error")
        self.assertIn("an accelerometer", event["message"])
        self.assertIn("a microphone", event["message"])
        self.accelerometer()
        self.assertEqual(self.event(process), {"type": "ready", "sensor": "accelerometer",
                                               "device": "bma"})

    def test_an_accelerometer_that_vanishes_is_an_error_and_is_waited_for(self):
        device = self.accelerometer()
        process = self.start("--sysfs", self.folder / "sys", "--sensor", "accelerometer")
        self.assertEqual(self.event(process)["type"], "ready")
        shutil.rmtree(device)
        self.assertEqual(self.event(process)["message"], "the accelerometer has gone")
        self.assertIn("none is there", self.event(process)["message"])
        self.accelerometer("again")
        self.assertEqual(self.event(process)["device"], "again")

    def test_a_shaken_polled_accelerometer_counts(self):
        device = self.accelerometer()
        process = self.start("--sysfs", self.folder / "sys", "--sensor", "accelerometer")
        self.assertEqual(self.event(process)["type"], "ready")
        time.sleep(0.5)
        fresh = device / "fresh"
        for value in ("2500", "1000"):
            fresh.write_text(value + "\n")
            fresh.rename(device / "in_accel_z_raw")
            time.sleep(0.01)
        event = self.event(process)
        self.assertEqual(event["type"], "slap")
        self.assertTrue(0.5 < event["amplitude"] < 3, event)

    def test_sensors_are_listed(self):
        self.accelerometer("bma", 100)
        listed = self.run_spank("--list-sensors", "--sysfs", self.folder / "sys").stdout
        self.assertIn("accelerometer\tiio:device0\tbma\t100 readings a second; taken only if asked for: "
                      "with fewer than 200 it misses knocks\n", listed)

    # Microphone

    def test_the_microphone_hears(self):
        samples = array.array("f", signal_with([(1, 0.5), (2.5, 0.3)], 4))
        (self.folder / "in.raw").write_bytes(samples.tobytes())
        self.use_files_for_sound(self.folder / "in.raw")
        self.environment["SDL_DISKAUDIODELAY"] = "5"
        process = self.start("--sensor", "microphone")
        self.assertEqual(self.event(process)["sensor"], "microphone")
        self.assertEqual(self.event(process)["type"], "slap")
        self.assertEqual(self.event(process)["type"], "slap")

    # Configuration

    def test_the_configuration_chooses_the_sensor_and_the_command_line_overrules_it(self):
        write_wav(self.folder / "k.wav", signal_with([(0.5, 0.5)], 1))
        self.configure(f"sensor = file:{self.folder}/k.wav\n")
        done = self.run_spank("--stdio", "--once", "--as-fast-as-possible")
        self.assertIn('"slap"', done.stdout)
        done = self.run_spank("--stdio", "--once", "--sensor", "file:/nowhere.wav")
        self.assertIn("/nowhere.wav", json.loads(done.stdout)["message"])

    def test_a_bad_line_is_reported_after_ready_and_the_rest_counts(self):
        write_wav(self.folder / "k.wav", signal_with([], 1))
        self.configure(f"volume = 11\nsensor = file:{self.folder}/k.wav\n")
        lines = self.run_spank("--stdio", "--as-fast-as-possible").stdout.splitlines()
        self.assertEqual(json.loads(lines[0])["type"], "ready")
        self.assertIn("configuration: line 1", json.loads(lines[1])["message"])

    # The end

    def assert_ends_within_100_ms(self, end, sensor="accelerometer", **more):
        """The quickest of five, since a loaded machine delays whom it likes."""
        times = []
        while len(times) < 5 and (not times or min(times) > 0.1):
            process = self.start("--sysfs", self.folder / "sys", "--sensor", sensor, **more)
            self.assertEqual(self.event(process)["type"], "ready")
            time.sleep(0.3)
            begin = time.monotonic()
            end(process)
            self.assertEqual(process.wait(5), 0)
            times.append(time.monotonic() - begin)
        self.assertLess(min(times), 0.1, times)

    def test_signals_end_it_cleanly_within_100_ms(self):
        self.accelerometer()
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            for sensor in ("accelerometer", "microphone"):
                self.assert_ends_within_100_ms(lambda p: p.send_signal(number), sensor)

    def test_a_reader_that_has_gone_ends_it_in_silence(self):
        self.accelerometer()
        self.assert_ends_within_100_ms(lambda p: p.stdout.close())

    def test_the_line_quit_ends_it(self):
        self.accelerometer()
        self.assert_ends_within_100_ms(lambda p: (p.stdin.write(b"quit\n"), p.stdin.flush()),
                                       stdin=subprocess.PIPE)

    def test_a_signal_ends_it_while_it_waits_for_a_sensor(self):
        process = self.start("--sysfs", self.folder, "--sensor", "accelerometer")
        self.assertEqual(self.event(process)["type"], "error")
        begin = time.monotonic()
        process.terminate()
        self.assertEqual(process.wait(5), 0)
        self.assertLess(time.monotonic() - begin, 0.1)

    # Rights

    @unittest.skipUnless(os.geteuid() == 0, "only root can give rights up")
    def test_started_by_polkit_it_becomes_the_user_who_asked(self):
        nobody = pwd.getpwnam("nobody")
        self.folder.chmod(0o755)
        device = self.accelerometer()
        for file in device.iterdir():
            file.chmod(0o600)    # root's alone, as a device is
        (self.folder / "Bonkora").mkdir(mode=0o700)    # not that user's to read
        (self.folder / "Bonkora" / "spank.conf").write_text("sensor = file:/nowhere.wav\n")
        self.environment["PKEXEC_UID"] = str(nobody.pw_uid)
        process = self.start("--sysfs", self.folder / "sys")
        # The device was opened as root; reading its files fails once the rights are gone.
        self.assertEqual(self.event(process)["sensor"], "accelerometer")
        status = pathlib.Path(f"/proc/{process.pid}/status").read_text()
        uid = next(line for line in status.splitlines() if line.startswith("Uid:"))
        self.assertEqual(uid.split()[1:], [str(nobody.pw_uid)] * 4)
        capabilities = next(line for line in status.splitlines() if line.startswith("CapEff:"))
        self.assertEqual(int(capabilities.split()[1], 16), 0)

    @unittest.skipUnless(os.geteuid() == 0, "only root can give rights up")
    def test_a_user_that_makes_no_sense_ends_it(self):
        self.environment["PKEXEC_UID"] = "many"
        done = self.run_spank("--stdio")
        self.assertEqual(done.returncode, 1)
        self.assertIn("PKEXEC_UID", json.loads(done.stdout)["message"])

    # Sound: SDL's disk driver writes what the loudspeaker would get, two channels of 16 bits

    SOUND_RATE = 44100

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

    def test_what_is_no_number_leaves_the_microphone_hearing(self):
        node = self.folder / "microphone"
        device = self.pipe_for_device(node)
        self.configure("mute = yes\n")
        self.use_files_for_sound(node)
        self.environment["SDL_DISKAUDIODELAY"] = "0"
        process = self.start("--sensor", "microphone")
        self.assertEqual(self.event(process)["type"], "ready")
        for odd in (math.nan, math.inf, -math.inf):
            samples = array.array("f", signal_with([(0.5, 0.5)], 0.8))
            samples[RATE // 10] = odd
            os.write(device, samples.tobytes())
            self.assertEqual(self.event(process)["type"], "slap")

    # Cost

    def test_listening_sleeps_between_the_pieces(self):
        self.use_files_for_sound()
        process = self.start("--sensor", "microphone")
        self.assertEqual(self.event(process)["type"], "ready")
        time.sleep(0.5)

        def used():
            fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rsplit(") ", 1)[1]
            return sum(map(int, fields.split()[11:13])) / os.sysconf("SC_CLK_TCK")

        before, begin = used(), time.monotonic()
        time.sleep(3)
        # What it really takes is measured by bench/detection/listening-cost; a loop that never
        # sleeps takes all of it.
        self.assertLess((used() - before) / (time.monotonic() - begin), 0.3)


if __name__ == "__main__":
    claims.main()
