"""What the Debian package and an installation hold, by the judgement of the system's own checkers.
Arguments: the folder of the packages, the build folder."""

import email.utils
import gzip
import pathlib
import platform
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as xml

PACKAGES, BUILD = (pathlib.Path(word) for word in sys.argv[1:3])
VERSION = next(line.rpartition("=")[2] for line in
               (BUILD / "CMakeCache.txt").read_text().splitlines()
               if line.startswith("CMAKE_PROJECT_VERSION:"))
ROOT = pathlib.Path(__file__).resolve().parents[2]
NAME = "org.bonkora.Bonkora"


def run(*words):
    return subprocess.run([str(word) for word in words], text=True, capture_output=True,
                          timeout=300)


def packageSet(name):
    """The packages that a file in scripts/packages names."""
    lines = (ROOT / "scripts/packages" / name).read_text().splitlines()
    return {line.split()[0] for line in lines if line and not line.startswith("#")}


class Papers(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.package = next(PACKAGES.glob(f"bonkora_{VERSION}_*.deb"))
        cls.root = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        subprocess.run(["dpkg-deb", "--extract", cls.package, cls.root], check=True)
        cls.share = cls.root / "usr" / "share"

    def assertSilent(self, *words):
        done = run(*words)
        self.assertEqual((done.returncode, done.stdout), (0, ""), done.stderr)

    def testLintianFindsNothing(self):
        self.assertSilent("lintian", "--pedantic", "--display-info", "--fail-on",
                          "error,warning,info,pedantic", self.package)

    def testThePackageHasItsDebugSymbols(self):
        self.assertTrue(list(PACKAGES.glob(f"bonkora-dbgsym_{VERSION}_*.*deb")))

    def testWhatIsRecommendedNamesOnePackageFirst(self):
        # apt takes the first; a name that many packages provide may bring a whole desktop.
        recommends = run("dpkg-deb", "--field", self.package, "Recommends").stdout
        for alternatives in recommends.split(","):
            first = alternatives.split("|")[0].strip()
            self.assertIn(f"Package: {first}\n", run("apt-cache", "show", first).stdout)

    def testTheProgramsAreHardened(self):
        # Debian's start files know no control-flow protection, so no program may claim it; ours are
        # compiled with it all the same. Branch protection is other processors'; newer checkers ask all.
        known = run("hardening-check", "--help").stdout
        without = [option for option in ("--nocfprotection", "--nobranchprotection") if option in known]
        contents = self.root / "usr/lib/Bonkora.app/Contents"
        for program in ("MacOS/bonkora", "Resources/spank", "Helpers/osascript",
                        "Helpers/bonkora-elevated"):
            done = run("hardening-check", *without, contents / program)
            self.assertEqual(done.returncode, 0, done.stdout)
            if platform.machine() == "x86_64":
                code = run("objdump", "--disassemble", contents / program).stdout
                self.assertGreater(code.count("endbr64"), 20, program)

    def testWhatBuildingNeedsIsWhatThePackageBuildsWith(self):
        named = packageSet("build")
        forTests = {"libgtest-dev", "libgmock-dev", "libsimdjson-dev"}
        taken = {"g++"}    # every Debian builder has a compiler
        control = (ROOT / "debian/control").read_text().partition("\n\n")[0]
        for package in named - forTests - taken:
            self.assertRegex(control, rf"[ ,]{re.escape(package)}[ ,]", package)

    def testTheInstalledPackagesTestNeedsWhatAVirtualDesktopNeeds(self):
        depends = (ROOT / "debian/tests/control").read_text().partition("Depends:")[2]
        listed = re.findall(r"[^\s,]+", depends.partition("\nRestrictions")[0])
        self.assertEqual(set(listed), {"@"} | packageSet("desktop"))

    def testTheOtherDistributionsPapersNameTheirPackages(self):
        forTests = {"gtest", "gtest-devel", "gmock-devel", "simdjson", "simdjson-devel"}
        taken = {"gcc", "pkgconf"}    # every Arch builder has these
        for names, paper in (("arch", "arch/PKGBUILD"), ("fedora", "rpm/bonkora.rpmspec")):
            listed = packageSet(names)
            text = (ROOT / "packaging" / paper).read_text()
            missing = {name for name in listed - forTests - taken
                       if not re.search(rf"(?<![\w-]){re.escape(name)}(?![\w-])", text)}
            self.assertEqual(missing, set(), paper)

    def testTheOtherDistributionsPapersNameTheSameVersion(self):
        for file, line in (("arch/PKGBUILD", f"pkgver={VERSION}"),
                           ("rpm/bonkora.rpmspec", f"Version:        {VERSION}")):
            self.assertIn(line, (ROOT / "packaging" / file).read_text().splitlines())

    def testVersionAndDateComeFromTheChangelog(self):
        head, tail = [line for line in (ROOT / "debian/changelog").read_text().splitlines()
                      if re.match("bonkora| -- ", line)][:2]
        self.assertIn(f"({VERSION})", head)
        date = email.utils.parsedate_to_datetime(tail.partition(">  ")[2])
        metainfo = xml.parse(self.share / "metainfo" / f"{NAME}.metainfo.xml")
        release = metainfo.find("releases/release")
        self.assertEqual((release.get("version"), release.get("date")),
                         (VERSION, f"{date:%Y-%m-%d}"))
        page = gzip.decompress((self.share / "man/man1/bonkora.1.gz").read_bytes()).decode()
        self.assertTrue(page.startswith(f".Dd {date:%B} {date.day}, {date.year}\n"))

    def testTheDesktopFilesAreValid(self):
        self.assertSilent("desktop-file-validate", self.share / "applications" / f"{NAME}.desktop",
                          self.root / "etc" / "xdg" / "autostart" / f"{NAME}.desktop")

    def testTheMetainfoIsValid(self):
        done = run("appstreamcli", "validate", "--no-net", "--no-color",
                   self.share / "metainfo" / f"{NAME}.metainfo.xml")
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertNotRegex(done.stdout, r"(?m)^[EWI]:")

    def testTheManualPagesAreClean(self):
        # The two name each other; mandoc looks for manuals among those installed only.
        own = ("Xr bonkora 1", "Xr spank 1", "outdated mandoc.db")
        for page in ("bonkora.1.gz", "spank.1.gz"):
            done = run("mandoc", "-T", "lint", self.share / "man" / "man1" / page)
            remarks = [line for line in done.stdout.splitlines()
                       if not any(known in line for known in own)]
            self.assertEqual(remarks, [], page)

    def testStartingWithTheSessionIsOff(self):
        entry = self.root / "etc" / "xdg" / "autostart" / f"{NAME}.desktop"
        self.assertIn("Hidden=true", entry.read_text().splitlines())

    def testPolkitAsksAtEveryStartOfTheInstalledProgram(self):
        action = xml.parse(self.share / "polkit-1" / "actions" / f"{NAME}.policy").find("action")
        self.assertEqual([rule.text for rule in action.find("defaults")], ["auth_admin"] * 3)
        program = action.find("annotate").text
        self.assertTrue((self.root / program.lstrip("/")).is_file(), program)

    def testAnInstallationStartsByItsLinkAndGoesByItsList(self):
        prefix = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()), "with space")
        done = run("cmake", "--install", BUILD, "--prefix", prefix)
        self.assertEqual(done.returncode, 0, done.stderr)
        answer = run(prefix / "bin" / "bonkora", "--version")
        self.assertEqual(answer.stdout, f"bonkora {VERSION}\n", answer.stderr)
        policy = prefix / "share" / "polkit-1" / "actions" / f"{NAME}.policy"
        self.assertIn(f">{prefix}/lib/Bonkora.app/Contents/Helpers/bonkora-elevated<",
                      policy.read_text())
        for line in (BUILD / "install_manifest.txt").read_text().splitlines():
            pathlib.Path(line).unlink()
        left = [path for path in prefix.rglob("*") if not path.is_dir()]
        self.assertEqual(left, [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
