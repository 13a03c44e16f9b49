"""A user, who runs the program by its name, through a PATH, with a home directory of their own."""
import collections
import os
import pathlib
import shutil
import subprocess
import sys

from pytest import mark, skip

PROGRAM = pathlib.Path(os.environ.get("GET_QMB_VER", "")).resolve()
HOST = "127.0.0.1"  # needs no entry in /etc/hosts
# Bytes above 0x7F hash as negative numbers, the hash has a leading zero, "%" begins no placeholder.
PAGE = "/é%C3%A9?20".encode()
ENTRY = "RevisionInfo-429C1028882CDBC"  # of HOST and PAGE, whatever the port
RELEASE = "4.7.2 (2022-06-30)\n"  # what the page of a server announces
Result = collections.namedtuple("Result", "status output errors")
linux_only = mark.skipif(sys.platform != "linux", reason="needs Linux")


class User:
    """Has a home, a cache file and an environment, and trusts the server "self-signed"."""

    def __init__(self, home, certificates):
        self.home = pathlib.Path(home).resolve()
        self.cache = self.home / ".qvd_qmb_properties.ini"
        self.program = self.home / "get-qmb-ver"
        self.program.symlink_to(PROGRAM)
        self.environment = {"HOME": str(self.home), "PATH": f"{self.home}:{os.environ['PATH']}",
                            "SSL_CERT_DIR": str(certificates), "SSL_CERT_FILE": "/none",
                            "LC_ALL": "xx_XX"}  # a locale that is not installed

    def run(self, *arguments, before=(), **options):
        command = [*before, "get-qmb-ver", *arguments]
        defaults = {"stdin": subprocess.DEVNULL, "stdout": subprocess.PIPE}
        run = subprocess.run(command, env=self.environment, encoding="utf-8",
                             stderr=subprocess.PIPE, **defaults | options)
        return Result(run.returncode, run.stdout, run.stderr)

    def run_page(self, *arguments, host=HOST, port=1, **options):  # nobody listens at port 1
        return self.run("--host", host, f"--port={port}", PAGE, *arguments, **options)

    def reason(self, *arguments, **options):
        """What a run tells with --debug; without it, the same run tells nothing."""
        assert self.run_page(*arguments, **options).errors == ""
        return self.run_page("--debug", *arguments, **options).errors

    def remember(self, text, timestamp):
        self.cache.write_text(f"[{ENTRY}]\ninfo={text}\ntimestamp={timestamp}\n")


def namespace(*command):
    """The command, for running the program behind it; skips the test where it is not allowed."""
    if not shutil.which(command[0]) or subprocess.run([*command, "true"]).returncode:
        skip(f"needs a namespace by {command[0]}")
    return command


def copies():
    """The process numbers of the background copies that nobody has waited for; on Linux."""
    children = pathlib.Path(f"/proc/self/task/{os.getpid()}/children").read_text()
    return [int(number) for number in children.split()]


def wait_for_copies():
    """Waits until they have ended and returns their exit statuses."""
    return [os.waitstatus_to_exitcode(os.waitpid(copy, 0)[1]) for copy in copies()]
