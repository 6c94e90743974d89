"""A microphone that goes while the detector listens, at a sound server of the test's own."""

import signal

import claims
from detectors import SoundServerCase

SOURCE = ("load-module", "module-null-source", "source_name=microphone", "description=Microphone")


class MicrophoneRemovalTest(SoundServerCase):
    def assert_listens(self, process):
        event = self.event(process, 15)
        while "no sensor" in event.get("message", ""):    # why not may change while it waits
            event = self.event(process, 15)
        self.assertEqual((event["type"], event.get("sensor")), ("ready", "microphone"), event)

    def assert_complains(self, process, *reasons):
        for reason in reasons:
            event = self.event(process)
            self.assertEqual(event["type"], "error")
            self.assertIn(reason, event["message"])

    def test_a_microphone_that_is_unplugged_is_an_error_and_is_waited_for(self):
        for settings in ("", "device = Microphone\n"):
            self.configure(settings)
            plug = self.control(*SOURCE)
            process = self.start("--sensor", "microphone")
            self.assert_listens(process)
            for _ in range(2):
                self.control("unload-module", plug)
                self.assert_complains(process, "the microphone has gone", "no sensor")
                plug = self.control(*SOURCE)
                self.assert_listens(process)
            self.control("unload-module", plug)
            self.end(process)

    def test_a_microphone_that_is_suspended_is_an_error_until_it_goes_on(self):
        self.control(*SOURCE)
        process = self.start("--sensor", "microphone")
        self.assert_listens(process)
        for _ in range(2):
            self.control("suspend-source", "microphone", "1")
            self.assert_complains(process, "stopped giving readings")
            self.control("suspend-source", "microphone", "0")
            self.assert_listens(process)
        process.terminate()
        self.assertEqual(process.wait(2), 0)

    def test_a_sound_server_that_hangs_is_an_error_and_holds_up_no_end(self):
        self.control(*SOURCE)
        process = self.start("--sensor", "microphone")
        self.assert_listens(process)
        self.server.send_signal(signal.SIGSTOP)
        self.addCleanup(self.server.send_signal, signal.SIGCONT)
        self.assert_complains(process, "stopped giving readings")
        process.terminate()
        self.assertEqual(process.wait(2), 0)

    def test_a_sound_server_that_is_restarted_is_found_again(self):
        self.control(*SOURCE)
        process = self.start("--sensor", "microphone")
        self.assert_listens(process)
        # An SDL whose server goes in the very moment in which it begins to record does not notice.
        while "Corked: no" not in self.control("list", "source-outputs"):
            time.sleep(0.05)
        self.stop_server(self.server)
        self.assert_complains(process, "the microphone has gone", "no sensor")
        self.start_server()
        self.control(*SOURCE)
        self.assert_listens(process)


if __name__ == "__main__":
    claims.main()
