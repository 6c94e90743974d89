"""Elevation for real: an unprivileged user, pkexec, polkit, and a command that runs as root.

ElevationTest.py BUNDLE POLICY"""

import os
import pathlib
import re
import select
import signal
import sys
import time
import unittest

import PolkitDesktop
from PolkitDesktop import NOBODY

# Prints the numbers of three root processes that stay: itself, one that took a session of its own
# and ignores requests to end, and one whose parent has ended.
SAY_NUMBER = "read -r me rest </proc/self/stat; echo $me; "
FAMILY = (f"{SAY_NUMBER}"
          f"setsid sh -c 'trap \"\" TERM INT HUP; {SAY_NUMBER} while :; do sleep 100; done' &"
          f"(sh -c '{SAY_NUMBER} exec setsid sleep 100' &);"
          "wait; sleep 100")


class Watch:
    """A process, from when it is known to live until it is gone."""

    def __init__(self, number):
        self.descriptor = os.pidfd_open(int(number))
        self.owner = os.stat(f"/proc/{int(number)}").st_uid

    def endsBy(self, deadline):
        poll = select.poll()
        poll.register(self.descriptor, select.POLLIN)
        return bool(poll.poll(max(0, (deadline - time.monotonic()) * 1000)))


class Elevation(unittest.TestCase):
    def setUp(self):
        desktop.agent.reset()

    def start(self, command, **more):
        runner = desktop.start(command, **more)
        for end in (runner.stdout, runner.stderr):
            self.addCleanup(end.close)
        self.addCleanup(runner.wait)
        self.addCleanup(runner.kill)
        return runner

    def result(self, command, **more):
        runner = self.start(command, **more)
        self.assertTrue(desktop.waitUntil(lambda: runner.poll() is not None))
        return runner.returncode, runner.stdout.read().decode(), runner.stderr.read().decode()

    def startFamily(self):
        runner = self.start(FAMILY)
        members = [Watch(desktop.readLine(runner)) for _ in range(3)]
        self.assertEqual([member.owner for member in members], [0, 0, 0])
        return runner, members

    def testAnAllowedCommandRunsAsRootAndKnowsWhoAsked(self):
        self.assertEqual(self.result("id -u; id -ru; echo $PKEXEC_UID; pwd; echo $PATH"),
                         (0, f"0\n0\n{NOBODY}\n/usr/share\n/usr/bin:/bin:/usr/sbin:/sbin\n", ""))

    def testThePromptIsTheApplicationsOwn(self):
        self.result("echo 'it is I' >/dev/null")
        [(action, message)] = desktop.agent.asked
        self.assertEqual(action, "org.bonkora.Bonkora.run-detector")
        self.assertTrue(message.startswith(
            "Authentication is required to run a command as administrator. "), message)
        # The command first and whole, then the folder, and nothing else.
        self.assertTrue(message.endswith(
            "/bonkora-elevated echo 'it is I' >/dev/null /usr/share"), message)
        self.assertNotIn("Bonkora", message.split(":")[0])
        self.assertTrue(desktop.policyPath.endswith(
            "/lib/Bonkora.app/Contents/Helpers/bonkora-elevated"))

    def testThePasswordIsAskedForEveryTime(self):
        for _ in range(3):
            self.assertEqual(self.result("true"), (0, "", ""))
        self.assertEqual(len(desktop.agent.asked), 3)

    def testOutputComesLive(self):
        gate = "/run/gate"
        os.mkfifo(gate)
        runner = self.start(f"echo one; read line <{gate}; echo $line")
        self.assertEqual(desktop.readLine(runner), "one")
        pathlib.Path(gate).write_text("two\n")
        self.assertEqual(desktop.readLine(runner), "two")
        self.assertEqual(runner.wait(20), 0)

    def testADismissedPromptIsReported(self):
        desktop.agent.answer = "dismiss"
        status, output, errors = self.result("echo bad")
        self.assertEqual((status, output), (1, ""))
        self.assertRegex(errors, r"\A0:56: execution error: User canceled\. \(-128\)\n\Z")

    def testAWrongPasswordIsReported(self):
        desktop.agent.answer = "refuse"
        status, output, errors = self.result("echo bad")
        self.assertEqual((status, output), (1, ""))
        self.assertRegex(errors, r"\A0:56: execution error: Administrator rights were refused\. "
                                 r".+ \(-60005\)\n\Z")

    def testADesktopWithoutAnAgentIsReported(self):
        status, output, errors = self.result("echo bad", withAgent=False)
        self.assertEqual((status, output), (1, ""))
        self.assertRegex(errors, r"\A0:56: execution error: Administrator rights were refused\. "
                                 r".*agent.* \(-60005\)\n\Z")

    def testNoMessageOfPkexecCountsAsAnEvent(self):
        messages = ""
        for answer, withAgent in (("refuse", True), ("dismiss", True), ("allow", False)):
            desktop.agent.answer = answer
            messages += self.result("echo bad", withAgent=withAgent)[2]
        self.assertIsNone(re.search("slap|hit|playing", messages, re.IGNORECASE))

    def testAFailingCommandIsReportedWithItsOwnNumber(self):
        for status in (1, 126, 127):
            self.assertEqual(self.result(f"echo boom >&2; exit {status}")[::2],
                             (1, f"0:{68 + len(str(status))}: execution error: boom"
                                 f" ({status})\n"))

    def testEndingTheRunnerEndsEverythingThatRunsAsRoot(self):
        runner, members = self.startFamily()
        deadline = time.monotonic() + 0.5
        runner.send_signal(signal.SIGTERM)
        self.assertTrue(all(member.endsBy(deadline) for member in members))
        self.assertEqual(runner.wait(20), 0)
        self.assertEqual(runner.stderr.read(), b"")

    def testKillingTheRunnerEndsEverythingThatRunsAsRoot(self):
        runner, members = self.startFamily()
        deadline = time.monotonic() + 0.5
        runner.kill()
        self.assertTrue(all(member.endsBy(deadline) for member in members))

    def testKillingTheElevatedSideEndsEverythingThatRunsAsRoot(self):
        for number in (signal.SIGKILL, signal.SIGTERM, signal.SIGQUIT):
            runner, members = self.startFamily()
            children = pathlib.Path(f"/proc/{runner.pid}/task/{runner.pid}/children").read_text()
            deadline = time.monotonic() + 0.5
            os.kill(int(children), number)
            self.assertTrue(all(member.endsBy(deadline) for member in members))
            self.assertEqual(runner.wait(20), 1)

    def testWhatNoPromptCouldShowIsRefusedWithoutAPrompt(self):
        status, output, errors = self.result("echo bad # \u202e")
        self.assertEqual((status, output), (1, ""))
        self.assertIn("The command was refused: it holds the invisible character U+202E", errors)
        self.assertEqual(desktop.agent.asked, [])

    def testAnOutputWithoutReaderEndsEverythingThatRunsAsRoot(self):
        runner, members = self.startFamily()
        deadline = time.monotonic() + 0.5
        runner.stdout.close()
        self.assertTrue(all(member.endsBy(deadline) for member in members))
        self.assertEqual(runner.wait(20), 0)

    def testEndingTheRunnerTakesThePromptAway(self):
        for number, status in ((signal.SIGTERM, 0), (signal.SIGKILL, -signal.SIGKILL)):
            desktop.agent.reset()
            desktop.agent.answer = "wait"
            runner = self.start("echo bad")
            self.assertTrue(desktop.waitUntil(lambda: desktop.agent.asked))
            children = pathlib.Path(f"/proc/{runner.pid}/task/{runner.pid}/children").read_text()
            prompt = Watch(children)
            deadline = time.monotonic() + 0.5
            runner.send_signal(number)
            self.assertEqual(runner.wait(20), status)
            self.assertTrue(prompt.endsBy(deadline))
            self.assertTrue(desktop.waitUntil(lambda: desktop.agent.cancelled))
            self.assertEqual(runner.stdout.read(), b"")


if __name__ == "__main__":
    PolkitDesktop.enter()
    desktop = PolkitDesktop.PolkitDesktop(*sys.argv[1:3])
    unittest.main(argv=sys.argv[:1], verbosity=2)
