"""A day of an accelerometer's signal leaves the detector no larger."""

import array
import random
import unittest

from detectors import DetectorCase


class FlatMemoryTest(DetectorCase):
    def test_a_day_of_an_accelerometer(self):
        rate = 200
        folder = self.accelerometer(rate=rate)
        for name in ("scan_elements", "buffer"):
            (folder / name).mkdir()
        for index, axis in enumerate("xyz"):
            for kind, text in (("en", "0"), ("type", "le:s16/16>>0"), ("index", str(index))):
                (folder / f"scan_elements/in_accel_{axis}_{kind}").write_text(text + "\n")
        for name, text in (("enable", "0"), ("length", "2"), ("watermark", "1")):
            (folder / "buffer" / name).write_text(text + "\n")
        (self.folder / "dev").mkdir()
        device = self.pipe_for_device(self.folder / "dev/iio:device0")
        process = self.start("--sysfs", self.folder / "sys", "--dev", self.folder / "dev",
                             "--sensor", "accelerometer")
        self.assertEqual(self.event(process)["type"], "ready")

        noise = random.Random(1)
        minute = array.array("h", (round(noise.gauss(0, 2)) for _ in range(60 * rate * 3)))
        minute[2::3] = array.array("h", (1000 + value for value in minute[2::3]))
        for second in range(1, 60, 2):
            for step, value in enumerate((600, -400, 200, -100)):
                minute[3 * (second * rate + step) + 2] += value
        allocator = 256 * 1024    # what it may keep for itself
        self.assert_stays_as_large(process, device, minute.tobytes(), 30, 1, 24 * 60, allocator)


if __name__ == "__main__":
    unittest.main()
