"""A machine of its own for the runner: private /run and polkit folders, a system bus with polkit on
it, the application's programs and policy, and an agent that answers the password prompt as the test
says. Everything lives in namespaces of this process and is gone with it.

enter() first, as root; then one PolkitDesktop. Single-threaded."""

import os
import pathlib
import re
import select
import shutil
import subprocess
import sys
import time

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NOBODY = 65534
AUTHORITY = "org.freedesktop.PolicyKit1"
ACTIONS = pathlib.Path("/usr/share/polkit-1/actions")


def skip(reason):
    print("SKIPPED:", reason)
    sys.exit(77)


def enter():
    """Starts this program again in namespaces of its own, unless it is there already."""
    if "BONKORA_OWN_MACHINE" in os.environ:
        return
    unshare = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
    if os.getuid() != 0:
        skip("only root can start a system bus and act as another user")
    for program in ("pkexec", "dbus-daemon"):
        if shutil.which(program) is None:
            skip(f"{program} is not installed")
    probe = subprocess.run([*unshare, "mount", "-t", "tmpfs", "tmpfs", "/run"], text=True,
                           capture_output=True)
    if probe.returncode != 0:
        skip("no namespaces here: " + probe.stderr.strip())
    os.environ["BONKORA_OWN_MACHINE"] = "1"
    os.execvp(unshare[0], [*unshare, sys.executable, "-B", *sys.argv])


def mountEmpty(folder):
    subprocess.run(["mount", "-t", "tmpfs", "-o", "mode=755", "tmpfs", folder], check=True)


class Agent(dbus.service.Object):
    """Does what the desktop's password dialog does; `answer` is what its user does."""

    def __init__(self, bus, authority):
        super().__init__(bus, "/org/bonkora/test/Agent")
        self.authority = authority
        self.reset()

    def reset(self):
        self.answer = "allow"
        self.asked = []
        self.cancelled = False

    @dbus.service.method(AUTHORITY + ".AuthenticationAgent", in_signature="sssa{ss}sa(sa{sv})",
                         async_callbacks=("done", "failed"))
    def BeginAuthentication(self, action, message, icon, details, cookie, identities, done,
                            failed):
        self.asked.append((str(action), str(message)))
        if self.answer == "dismiss":
            failed(dbus.DBusException("Dismissed", name=AUTHORITY + ".Error.Cancelled"))
        elif self.answer == "refuse":
            done()
        elif self.answer == "allow":
            # What the dialog's helper says, as root, once the password was right. The number is that
            # of the agent's user: for newer polkits whoever it was registered for.
            def respond(user, otherwise):
                self.authority.AuthenticationAgentResponse2(
                    dbus.UInt32(user), cookie, identities[0], reply_handler=done,
                    error_handler=otherwise)

            respond(0, lambda _: respond(NOBODY, failed))

    @dbus.service.method(AUTHORITY + ".AuthenticationAgent", in_signature="s")
    def CancelAuthentication(self, cookie):
        self.cancelled = True


class PolkitDesktop:
    def __init__(self, bundle, policy):
        policies = {file.name: file.read_text() for file in ACTIONS.glob("*.policy")}
        for folder in ("/run", ACTIONS, "/usr/share/polkit-1/rules.d", "/etc/polkit-1/rules.d"):
            if os.path.isdir(folder):
                mountEmpty(folder)
        # The programs where an unprivileged user may go, and the policy for them there.
        self.helpers = pathlib.Path("/run/Bonkora.app/Contents/Helpers")
        shutil.copytree(pathlib.Path(bundle, "Contents/Helpers"), self.helpers)
        text = pathlib.Path(policy).read_text()
        self.policyPath = re.search(r'exec\.path">(.*)</annotate>', text)[1]
        policies["org.bonkora.Bonkora.policy"] = text.replace(
            self.policyPath, str(self.helpers / "bonkora-elevated"))
        for name, text in policies.items():
            (ACTIONS / name).write_text(text)

        os.mkdir("/run/dbus")
        daemon = subprocess.Popen(["dbus-daemon", "--system", "--nofork", "--nopidfile",
                                   "--print-address"], stdout=subprocess.PIPE)
        daemon.stdout.readline()
        bus = dbus.SystemBus(mainloop=DBusGMainLoop())
        bus.start_service_by_name(AUTHORITY)
        self.authority = dbus.Interface(bus.get_object(AUTHORITY, f"/{AUTHORITY}/Authority"
                                                       .replace(".", "/")),
                                        AUTHORITY + ".Authority")
        self.agent = Agent(bus, self.authority)

    def start(self, command, withAgent=True):
        """The runner, as an unprivileged user, for that command as administrator."""
        literal = command.replace("\\", "\\\\").replace('"', '\\"')
        script = f'do shell script "{literal}" with administrator privileges'
        # It waits for the agent, which must know its number.
        runner = subprocess.Popen(
            ["/bin/sh", "-c", 'read line; exec "$@"', "sh", self.helpers / "osascript", "-e",
             script], cwd="/usr/share", user=NOBODY, group=NOBODY, extra_groups=[],
            env={"PATH": "/usr/bin:/bin", "SHELL": "/none", "LANG": "odd\n"},
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, bufsize=0)
        if withAgent:
            startTime = pathlib.Path(f"/proc/{runner.pid}/stat").read_text().split()[21]
            process = {"pid": dbus.UInt32(runner.pid), "start-time": dbus.UInt64(int(startTime)),
                       "uid": dbus.Int32(NOBODY)}
            self.authority.RegisterAuthenticationAgent(("unix-process", process), "C",
                                                       "/org/bonkora/test/Agent")
        runner.stdin.write(b"\n")
        runner.stdin.close()
        return runner

    def waitUntil(self, condition, seconds=20):
        """Lets the agent work until then; whether it came to that in time."""
        end = time.monotonic() + seconds
        context = GLib.MainContext.default()
        while not condition() and time.monotonic() < end:
            if not context.iteration(False):
                time.sleep(0.005)
        return condition()

    def readLine(self, runner):
        poll = select.poll()
        poll.register(runner.stdout, select.POLLIN)
        if not self.waitUntil(lambda: poll.poll(0)):
            raise TimeoutError("no line")
        return runner.stdout.readline().decode().strip()
