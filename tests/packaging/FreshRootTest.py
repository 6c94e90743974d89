"""The package on a Debian made from nothing: it installs with what it depends on, is upgraded, an
unprivileged user starts it on a virtual display and its detector through polkit, a slap counts, and
nothing is left once it has been removed.

Arguments: the folder of the packages, the build folder, which keeps the bare system and the
downloads for the next time. Needs root, and a Debian mirror at least once. Everything runs in
namespaces of its own and on a layer in memory."""

import os
import pathlib
import platform
import re
import shutil
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve()
sys.path.insert(0, str(HERE.parents[1] / "system" / "runner"))
from PolkitDesktop import NOBODY, enter, mountEmpty, skip  # noqa: E402

SCRIPTS = HERE.parents[2] / "scripts"
ROOT = pathlib.Path("/run/fresh")
LAYERS = pathlib.Path("/run/layers")
RELEASE = platform.freedesktop_os_release().get("VERSION_CODENAME", "")

# What any package's coming and going changes, and what this test puts there itself.
UNSTEADY = ("/dev", "/proc", "/tmp", "/run", "/var/cache", "/var/lib/apt", "/var/lib/dpkg",
            "/var/log")

# Stands for the person who knows the password.
RULE = """polkit.addRule(function(action, subject) {
    if (action.id == "org.bonkora.Bonkora.run-detector" && subject.user == "nobody") {
        return polkit.Result.YES;
    }
});
"""


def run(*words, **more):
    subprocess.run([str(word) for word in words], check=True, **more)


def inside(*words, **more):
    environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND": "noninteractive",
                   "LC_ALL": "C.UTF-8"}
    run("chroot", ROOT, *words, env=environment, stdin=subprocess.DEVNULL, **more)


def mirror():
    """Where this machine's own packages come from."""
    listed = subprocess.check_output(
        ["apt-get", "indextargets", "--format", "$(RELEASE) $(COMPONENT) $(SITE)"], text=True)
    for line in listed.splitlines():
        release, component, site = line.split(maxsplit=2)
        if (release, component) == (RELEASE, "main"):
            return site
    skip(f"this machine has no mirror of {RELEASE}")


def makeBareSystem(base):
    if not base.is_dir():
        begun = base.with_suffix(".part")
        shutil.rmtree(begun, ignore_errors=True)
        done = subprocess.run(["debootstrap", "--variant=minbase", RELEASE, begun, mirror()],
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        if done.returncode != 0:
            skip("no bare system: " + done.stdout[-300:])
        begun.rename(base)


def enterBareSystem(base, downloads, folder):
    mountEmpty("/run")
    for path in (ROOT, LAYERS / "upper", LAYERS / "work"):
        path.mkdir(parents=True)
    run("mount", "-t", "overlay", "overlay", "-o",
        f"lowerdir={base},upperdir={LAYERS}/upper,workdir={LAYERS}/work", ROOT)
    run("mount", "-t", "proc", "proc", ROOT / "proc")
    run("mount", "--rbind", "/dev", ROOT / "dev")
    run("mount", "--bind", "/tmp", ROOT / "tmp")
    downloads.mkdir(exist_ok=True)
    run("mount", "--bind", downloads, ROOT / "var/cache/apt/archives")
    shutil.copy("/etc/resolv.conf", ROOT / "etc")
    # Services are started by this test, where it needs them.
    refuse = ROOT / "usr/sbin/policy-rc.d"
    refuse.write_text("#!/bin/sh\nexit 101\n")
    refuse.chmod(0o755)
    inside("usermod", "--home", folder / "home", "nobody")
    inside("apt-get", "update", "-qq")


def install(package):
    shutil.copy(package, ROOT / "root/bonkora.deb")
    inside("apt-get", "install", "-qq", "--no-install-recommends", "/root/bonkora.deb",
           stdout=subprocess.DEVNULL)
    os.remove(ROOT / "root/bonkora.deb")


def asEarlierVersion(package, folder):
    """The same package, as it would have been called before."""
    run("dpkg-deb", "--raw-extract", package, folder / "earlier")
    control = folder / "earlier/DEBIAN/control"
    control.write_text(re.sub("(?m)^Version: .*", "Version: 0.0.1", control.read_text()))
    run("dpkg-deb", "--root-owner-group", "--build", folder / "earlier", folder / "earlier.deb",
        stdout=subprocess.DEVNULL)
    shutil.rmtree(folder / "earlier")
    return folder / "earlier.deb"


def files():
    """Every path of the system that should be the same before and after."""
    found = set()
    for folder, folders, names in os.walk(ROOT):
        inner = "/" + os.path.relpath(folder, ROOT)
        folders[:] = [name for name in folders
                      if os.path.normpath(f"{inner}/{name}") not in UNSTEADY]
        found |= {os.path.normpath(f"{inner}/{name}") for name in folders + names}
    return found


def countASlap(folder):
    """Plays the installed program's user: on a desktop of the host, as nobody."""
    home = folder / "home"
    (home / ".config/Bonkora").mkdir(parents=True)
    run(SCRIPTS / "make-recording", "--count", 3, folder / "knocks.wav")
    (home / ".config/Bonkora/spank.conf").write_text(f"sensor = file:{folder}/knocks.wav\n")
    # The program as the steps start it: into the system, and its right to go there laid down.
    bundle = folder / "Bonkora.app/Contents/MacOS"
    bundle.mkdir(parents=True)
    (bundle / "bonkora").write_text(
        f"#!/bin/sh\nexec /usr/sbin/chroot {ROOT} /usr/bin/setpriv --inh-caps=-all"
        " --ambient-caps=-all /usr/bin/bonkora\n")
    (bundle / "bonkora").chmod(0o755)
    for path in (SCRIPTS / "virtual-desktop", HERE.parents[1] / "support/desktop.py",
                 HERE.parent / "freshRootSteps.py"):
        shutil.copy(path, folder)
    run("chown", "-R", f"{NOBODY}:{NOBODY}", folder)
    os.makedirs("/tmp/.X11-unix", 0o1777, exist_ok=True)
    run("setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups",
        "--inh-caps=+sys_chroot", "--ambient-caps=+sys_chroot", folder / "virtual-desktop",
        "--home", home, "--", "/usr/bin/python3", "-B", folder / "freshRootSteps.py",
        cwd=folder, timeout=120)


def check(holds, claim):
    if not holds:
        sys.exit(f"FAILED: {claim}")
    print("ok:", claim, flush=True)


def main():
    packages, build = (pathlib.Path(word).resolve() for word in sys.argv[1:3])
    package, = packages.glob("bonkora_*.deb")
    if shutil.which("debootstrap", path=os.environ["PATH"] + ":/usr/sbin") is None:
        skip("debootstrap is not installed")
    makeBareSystem(build / "bare-debian")
    with tempfile.TemporaryDirectory(prefix="fresh-root-") as name:
        folder = pathlib.Path(name)
        folder.chmod(0o755)
        enterBareSystem(build / "bare-debian", build / "debian-packages", folder)
        earlier = asEarlierVersion(package, folder)

        install(earlier)
        inside("dpkg", "--purge", "bonkora", stdout=subprocess.DEVNULL)
        before = files()
        check(not [path for path in before if "bonkora" in path.lower() or "spank" in path],
              "a first installation leaves nothing behind")

        install(earlier)
        install(package)
        check((ROOT / "usr/bin/bonkora").is_symlink(), "the package is installed over an earlier one")
        (ROOT / "etc/polkit-1/rules.d/00-test.rules").write_text(RULE)
        (ROOT / "run/dbus").mkdir(parents=True, exist_ok=True)
        daemon = subprocess.Popen(["chroot", ROOT, "dbus-daemon", "--system", "--nofork",
                                   "--nopidfile", "--print-address"], stdout=subprocess.PIPE)
        daemon.stdout.readline()
        countASlap(folder)
        print("ok: a slap counts", flush=True)

        os.remove(ROOT / "etc/polkit-1/rules.d/00-test.rules")
        inside("dpkg", "--purge", "bonkora", stdout=subprocess.DEVNULL)
        left = sorted(files() - before)
        check(not left, f"removing it leaves nothing behind {left or ''}")


if __name__ == "__main__":
    enter()
    main()
