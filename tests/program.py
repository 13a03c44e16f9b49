"""A user, who runs the program by its name, through a PATH, with a home directory of their own."""
import os
import pathlib
import shutil
import subprocess

from pytest import skip

TESTS = pathlib.Path(__file__).parent
PROGRAM = pathlib.Path(os.environ.get("GET_QMB_VER", "")).resolve()
HOST = "127.0.0.1"  # needs no entry in /etc/hosts
# Bytes above 0x7F hash as negative numbers, the hash has a leading zero, "%" begins no placeholder.
PAGE = "/é%C3%A9?20".encode()
# The hash of HOST, "/" and PAGE, worked out in Python: answers in old files are found for ever.
ENTRY = "RevisionInfo-429C1028882CDBC"
RELEASE = "4.7.2 (2022-06-30)\n"  # what the page of a server announces


class User:
    """Has a home, a cache file and an environment, and trusts the server "self-signed"."""

    def __init__(self, home, certificates):
        self.home = pathlib.Path(home).resolve()
        self.cache = self.home / ".qvd_qmb_properties.ini"
        self.program = self.home / "get-qmb-ver"
        self.program.symlink_to(PROGRAM)
        self.environment = {
            "HOME": str(self.home), "PATH": f"{self.home}:{os.environ['PATH']}",
            "SSL_CERT_DIR": "/none", "SSL_CERT_FILE": f"{certificates}/self-signed.pem",
            "LC_ALL": "xx_XX",  # not installed: to ask for the user's locale would raise an error
            "TZ": "XXX3"}  # behind UTC: a deadline in local time would be over at once

    def run(self, *arguments, before=(), stdout=subprocess.PIPE, **options):
        return subprocess.run([*before, "get-qmb-ver", *arguments], env=self.environment,
                              stdout=stdout, stderr=subprocess.PIPE, encoding="utf-8", **options)

    def run_page(self, *arguments, host=HOST, port="none", **options):  # no such service
        return self.run("--host", host, f"--port={port}", PAGE, *arguments, **options)

    def expect_answer(self, text, *arguments, **options):
        result = self.run_page(*arguments, **options)
        assert (result.returncode, result.stdout, result.stderr) == (0, text, "")

    def reason(self, *arguments, answer="", **options):
        """What a run tells with --debug; without it, the same run prints just the answer."""
        self.expect_answer(answer, *arguments, **options)
        return self.run_page("--debug", *arguments, **options).stderr

    def remember(self, text, timestamp=2**63 - 1):  # never stale
        self.cache.write_text(f"[{ENTRY}]\ninfo={text}\ntimestamp={timestamp}\n")


def available(*command):
    """The command, for running another behind it; skips the test where that is not possible."""
    if not shutil.which(command[0]) or subprocess.run([*command, "true"]).returncode:
        skip(f"needs {command[0]}")
    return command


def copies():
    """The process numbers of the background copies that nobody has waited for."""
    children = pathlib.Path(f"/proc/self/task/{os.getpid()}/children").read_text()
    return [int(number) for number in children.split()]


def wait_for_copies():
    """Waits until there is none left and returns their exit statuses."""
    return [os.waitstatus_to_exitcode(os.wait()[1]) for _ in iter(copies, [])]
