"""The commands at the root and what they stand on, from outside: messages, statuses, files."""

import os
import pathlib
import pty
import re
import shutil
import signal
import struct
import subprocess
import tempfile
import time
import unittest
import wave

import claims

ROOT = pathlib.Path(__file__).resolve().parents[2]


def run(*words, **more):
    return subprocess.run([str(word) for word in words], text=True, capture_output=True,
                          timeout=60, **more)


class Commands(unittest.TestCase):
    def testHelpIsPrintedAndUnknownOptionsAreRefused(self):
        for command in ("run", "test"):
            helped = run(ROOT / command, "--help", cwd="/")
            self.assertEqual((helped.returncode, helped.stderr), (0, ""))
            self.assertTrue(helped.stdout.startswith(f"usage: ./{command}"))
            self.assertEqual(run(ROOT / command, "--nonsense").returncode, 2)


class InstallPackages(unittest.TestCase):
    SCRIPT = ROOT / "scripts" / "install-packages"

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.folder.chmod(0o755)
        (self.folder / "packages").mkdir()
        (self.folder / "install-packages").write_bytes(self.SCRIPT.read_bytes())
        (self.folder / "install-packages").chmod(0o755)

    def install(self, *sets, **more):
        return run(self.folder / "install-packages", *sets, **more)

    def testEveryNamedPackageIsKnownAndHasItsReason(self):
        for file in (ROOT / "scripts" / "packages").iterdir():
            for line in file.read_text().splitlines():
                if line and not line.startswith("#"):
                    self.assertRegex(line, r"^[A-Za-z0-9.+_-]+\?? +# \S", file.name)

    def testAnUnknownSetIsAnError(self):
        done = self.install("nonsense")
        self.assertEqual(done.returncode, 2)
        self.assertIn('"nonsense"', done.stderr)

    def testSaysNothingWhenNothingIsMissing(self):
        (self.folder / "packages" / "some").write_text("dpkg  # always there\n\n# a comment\n"
                                                        "sh?  # no package, but a program\n")
        done = self.install("some")
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "", ""))

    @unittest.skipUnless(os.getuid() == 0, "only root can become somebody without sudo")
    def testWithoutRootItPrintsTheCommandToRun(self):
        (self.folder / "packages" / "some").write_text("dpkg  # there\nno-such-package  # not\n")
        done = self.install("some", user="nobody", group="nogroup", extra_groups=[],
                            stdin=subprocess.DEVNULL)
        self.assertEqual(done.returncode, 1)
        self.assertIn("    apt-get install --no-install-recommends no-such-package\n", done.stderr)


    def stage(self, **programs):
        """Puts shell scripts in the place of programs; a package is missing. Returns an environment."""
        (self.folder / "packages" / "some").write_text("no-such-package  # not there\n")
        (self.folder / "bin").mkdir()
        for name, script in {"sudo": '[ "$1" != -n ] || shift; exec "$@"', **programs}.items():
            program = self.folder / "bin" / name.replace("_", "-")
            program.write_text(f"#!/bin/sh\n{script}\n")
            program.chmod(0o755)
        return {"PATH": f"{self.folder}/bin:/usr/bin:/bin"}

    def testWithoutANetworkItSaysSoInALine(self):
        done = self.install("some", env=self.stage(
            apt_get="echo 'Temporary failure resolving some.mirror'; exit 100"))
        self.assertEqual(done.returncode, 1)
        self.assertEqual(done.stderr.splitlines()[0],
                         "The packages cannot be fetched: no network, or no answer from the mirror.")
        self.assertNotIn("Temporary", done.stderr)

    def testCtrlCLetsAptFinishAndBeginsNothingFurther(self):
        environment = self.stage(apt_get=f"""cd {self.folder}
            for word; do case $word in update|install) break ;; esac; done
            echo "$word begun" >>log; sleep 0.5; echo "$word whole" >>log""")
        process = subprocess.Popen([self.folder / "install-packages", "some"], env=environment,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.PIPE, text=True, start_new_session=True)
        while not (self.folder / "log").exists():
            time.sleep(0.01)
        os.killpg(process.pid, signal.SIGINT)    # as a terminal does
        errors = process.communicate(timeout=20)[1]
        self.assertEqual(process.returncode, 130, errors)
        self.assertEqual((self.folder / "log").read_text(), "update begun\nupdate whole\n")

    def testAnotherSystemIsToldTheLibrariesAndTheCommands(self):
        tools = self.folder / "tools"
        tools.mkdir()
        for name in ("bash", "dirname", "sed", "tr", "cat", "env"):
            (tools / name).symlink_to(shutil.which(name))
        for name in ("fedora", "arch"):
            (self.folder / "packages" / name).write_text(f"cmake-of-{name}  # builds\n")
        done = self.install("some", env={"PATH": str(tools)})
        self.assertEqual(done.returncode, 1)
        for text in ("dnf install cmake-of-fedora", "pacman -S --needed cmake-of-arch",
                     "cmake --preset release", "cmake --build"):
            self.assertIn(text, done.stderr)
        self.assertNotIn("command not found", done.stderr)


class Clone(unittest.TestCase):
    """./run and ./test in a clone of which only what they call exists."""

    def setUp(self):
        self.folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory())) / "a & b"
        (self.folder / "scripts").mkdir(parents=True)
        for name in ("run", "test", "scripts/clone-can-be-built"):
            shutil.copy(ROOT / name, self.folder / name)

    def testOneThatCannotBeWrittenToIsRefusedInALine(self):
        (self.folder / "build").write_text("no folder")
        for command in ("run", "test"):
            done = run(self.folder / command)
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertRegex(done.stderr, r"\AThis clone cannot be built: .*\n\Z")

    def testAPathThatCMakeCannotTakeIsRefusedInALine(self):
        for name in ('a "b"', "a;b", "a\\b"):
            folder = shutil.copytree(self.folder, self.folder.parent / name)
            done = run(folder / "run")
            self.assertEqual((done.returncode, done.stdout), (1, ""))
            self.assertRegex(done.stderr, r"\AThis clone cannot be built: CMake .*\n\Z")

    def testATestThatEndsBeforeItsTestsFailsWithoutFurtherComplaint(self):
        packages = self.folder / "scripts" / "install-packages"
        packages.write_text("#!/bin/sh\necho No package today\nexit 1\n")
        packages.chmod(0o755)
        done = run(self.folder / "test")
        self.assertEqual((done.returncode, done.stderr), (1, ""))
        self.assertIn("1 of 1 phases failed", done.stdout)


    def runTestWithStandIns(self, *options, **more):
        """./test, with a CTest of which one test can be run by root only."""
        for name in ("scripts/test-results",):
            shutil.copy(ROOT / name, self.folder / name)
        programs = {"scripts/install-packages": "", "bin/chown": "", "scripts/check-format": "",
                    "scripts/check-tidy": "", "scripts/check-macos": "", "bench/application/run": "",
                    "scripts/try-release": 'echo "$*" >>tried',
                    # The first build of "asan" fails.
                    "bin/cmake": """
            echo "$* $(chrt --pid 0 | head -n 1)" >>builds
            case $* in *--build*asan*) mkdir failed 2>/dev/null && exit 1; exit 0 ;; esac
            """,
                    # Asks for the password once, if it is to: until then -n is refused.
                    "bin/sudo": """
            case $1 in
                -v) rm -f asks; exit ;;
                -n) [ ! -e asks ] || exit 1; shift; root=yes exec "$@" ;;
            esac""", "bin/ctest": """
            for word; do case $before in --output-junit) file=$word ;; esac; before=$word; done
            case "$root $*" in
                yes*) echo '<testcase name="late" status="run"/>' ;;
                *-L\\ system*) echo '<testcase name="late" status="notrun"><skipped/><system-out>' \\
                    'SKIPPED: only root can' '</system-out></testcase>' | sed 's/> SKIP/>SKIP/' ;;
                *) [ ! -e slow ] || until [ -e failed ]; do sleep 0.1; done
                   echo '<testcase name="quick" status="run"/>' ;;
            esac | sed 's|.*|<suite>&</suite>|' >"$file"
            """.replace("\\\\", "\\")}
        (self.folder / "bin").mkdir()
        (self.folder / "bench/application").mkdir(parents=True)
        for name, script in programs.items():
            (self.folder / name).write_text(f"#!/bin/bash\n{script}\n")
            (self.folder / name).chmod(0o755)
        for folder in (self.folder.parent, self.folder):
            folder.chmod(0o777)
        return run(self.folder / "test", *options, env={"PATH": f"{self.folder}/bin:/usr/bin:/bin"},
                   **{"stdin": subprocess.DEVNULL, **more})

    def testWhatWasSkippedIsListedAndHasNotPassed(self):
        done = self.runTestWithStandIns()
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        if os.getuid() == 0:
            self.assertIn("1 of 2 tests passed", done.stdout)
            self.assertIn("not passed:\n  late: only root can\n", done.stdout)
            self.assertIn("skipped: 1.", done.stdout)

    @unittest.skipUnless(os.getuid() == 0, "only root can become a plain user")
    def testWhatOnlyRootCanDoIsRunThroughSudo(self):
        done = self.runTestWithStandIns(user="nobody", group="nogroup", extra_groups=[])
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("2 of 2 tests passed", done.stdout)
        self.assertIn("skipped: 0.", done.stdout)

    @unittest.skipUnless(os.getuid() == 0, "only root can become a plain user")
    def testWhoSitsAtATerminalIsAskedForThePasswordThatNobodyTypedYet(self):
        (self.folder / "asks").touch()
        ends = pty.openpty()
        for end in ends:
            self.addCleanup(os.close, end)
        done = self.runTestWithStandIns(user="nobody", group="nogroup", extra_groups=[],
                                        stdin=ends[1])
        self.assertIn("sudo asks for your password", done.stdout)
        self.assertIn("2 of 2 tests passed", done.stdout)

    @unittest.skipUnless(os.getuid() == 0, "only root can become a plain user")
    def testWithoutATerminalNobodyIsAsked(self):
        (self.folder / "asks").touch()
        done = self.runTestWithStandIns(user="nobody", group="nogroup", extra_groups=[])
        self.assertNotIn("password", done.stdout)
        self.assertIn("not passed:\n  late: only root can\n", done.stdout)

    @unittest.skipUnless(os.getuid() == 0, "only root can become a plain user")
    def testATerminalOfAnotherUsersServesAsWell(self):
        with tempfile.TemporaryFile() as terminal:    # as after su: open, and root's alone
            done = self.runTestWithStandIns(user="nobody", group="nogroup", extra_groups=[],
                                            stdin=terminal)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)

    def testAllBuildsAheadWithIdleTimeAndAgainWhatFailed(self):
        (self.folder / "slow").touch()
        done = self.runTestWithStandIns("--all")
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        self.assertIn("15 phases", done.stdout)
        self.assertRegex((self.folder / "tried").read_text(), r"\A--build (bookworm|trixie)\n\Z")
        builds = (self.folder / "builds").read_text().splitlines()
        for preset in ("asan", "tsan", "clang", "fuzz"):
            *ahead, last = (build for build in builds if f"--build --preset {preset} " in build)
            self.assertNotIn("SCHED_IDLE", last)
            for build in ahead:
                self.assertIn("SCHED_IDLE", build)
        self.assertIn("SCHED_IDLE", "".join(builds))


class TestResults(unittest.TestCase):
    REPORT = """<testsuite>
        <testcase name="a.fine" status="run"/>
        <testcase name="a.bad" status="fail"><failure message=""/></testcase>
        <testcase name="a.late" status="notrun"><skipped message=""/>
            <system-out>/some/file.cpp:1: Skipped\nonly root can\n</system-out></testcase>
        <testcase name="a.dumb" status="notrun"><skipped message=""/>
            <system-out>SKIPPED: testThis: no microphone\n</system-out></testcase>
        </testsuite>"""
    AS_ROOT = '<testsuite><testcase name="a.late" status="run"/></testsuite>'

    def ask(self, question, *reports):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        for number, report in enumerate(reports):
            (folder / f"{number}.xml").write_text(report)
        done = run(ROOT / "scripts" / "test-results", question, *sorted(folder.iterdir()))
        self.assertEqual(done.returncode, 0, done.stderr)
        return done.stdout

    def testSkippedOnesHaveNotPassed(self):
        self.assertEqual(self.ask("--count", self.REPORT), "1 of 4 tests passed\n")
        self.assertEqual(self.ask("--skipped", self.REPORT),
                         "a.dumb: testThis: no microphone\na.late: only root can\n")

    def testWhatRootRunsLaterCounts(self):
        self.assertEqual(self.ask("--only-root", self.REPORT), "^(a\\.late)$\n")
        self.assertEqual(self.ask("--count", self.REPORT, self.AS_ROOT), "2 of 4 tests passed\n")
        self.assertEqual(self.ask("--skipped", self.REPORT, self.AS_ROOT),
                         "a.dumb: testThis: no microphone\n")


class CheckSkipped(unittest.TestCase):
    def check(self, skipped):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        (folder / "skipped").write_text(skipped)
        (folder / "list").write_text("# why\nmacos  # no compiler\n\n")
        return run(ROOT / ".ci" / "check-skipped", folder / "skipped", folder / "list")

    def testWhatTheListAllowsMayBeSkipped(self):
        self.assertEqual(self.check("").returncode, 0)
        self.assertEqual(self.check("macos: npm is not installed\n").returncode, 0)

    def testAnythingElseFails(self):
        done = self.check("macos: none\nsystem.ElevationTest: only root can: do it\n")
        self.assertEqual(done.returncode, 1)
        self.assertIn("system.ElevationTest: only root can: do it", done.stdout)
        self.assertNotIn("macos", done.stdout)


class MakeRecording(unittest.TestCase):
    def testHasAsManyKnocksAsAskedFor(self):
        with tempfile.TemporaryDirectory() as folder:
            path = f"{folder}/knocks.wav"
            done = run(ROOT / "scripts" / "make-recording", "--count", "3", "--gap", "1", path)
            self.assertEqual(done.returncode, 0, done.stderr)
            with wave.open(path) as file:
                self.assertEqual((file.getnchannels(), file.getsampwidth()), (1, 2))
                samples = memoryview(file.readframes(file.getnframes())).cast("h")
                rate = file.getframerate()
        loud = [n / rate for n, sample in enumerate(samples) if abs(sample) > 8000]
        starts = [t for n, t in enumerate(loud) if n == 0 or t - loud[n - 1] > 0.5]
        self.assertEqual([round(t) for t in starts], [2, 3, 4])
        self.assertLess(max(map(abs, samples[:2 * rate])), 300)


class MacIcon(unittest.TestCase):
    KEPT = ROOT / "Resources" / "Bonkora.icns"

    def pictures(self, path):
        """Kind -> PNG of every picture in the file."""
        content = path.read_bytes()
        self.assertEqual(struct.unpack(">4sI", content[:8]), (b"icns", len(content)))
        found, place = {}, 8
        while place < len(content):
            kind, length = struct.unpack(">4sI", content[place:place + 8])
            found[kind] = content[place + 8:place + length]
            place += length
        self.assertEqual(place, len(content))
        return found

    def testTheKeptOneShowsTheDrawingInEverySize(self):
        folder = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        fresh = folder / "fresh.icns"
        self.assertEqual(run(ROOT / "scripts" / "make-icns", fresh).returncode, 0)
        kept, made = self.pictures(self.KEPT), self.pictures(fresh)
        self.assertEqual(kept.keys(), made.keys())
        for kind in kept:
            (folder / "kept.png").write_bytes(kept[kind])
            (folder / "made.png").write_bytes(made[kind])
            # Not the same bytes: another version of the renderer smooths edges otherwise.
            compared = run("compare", "-metric", "RMSE", folder / "kept.png",
                           folder / "made.png", "null:")
            difference = re.search(r"\(([0-9.e-]+)\)", compared.stderr)
            self.assertLess(float(difference[1]), 0.01, kind)

    def testItHasThePicturesOfBothKindsOfDisplay(self):
        sizes = {kind: struct.unpack(">II", picture[16:24])
                 for kind, picture in self.pictures(self.KEPT).items()}
        self.assertEqual(sizes, {kind: (size, size) for kind, size in {
            b"ic07": 128, b"ic08": 256, b"ic09": 512, b"ic10": 1024,
            b"ic11": 32, b"ic12": 64, b"ic13": 256, b"ic14": 512}.items()})


if __name__ == "__main__":
    claims.main()
