"""What the tests of the real program share: the program, its servers and its background copies."""
import collections
import contextlib
import ctypes
import os
import pathlib
import signal
import subprocess
import sys
import tempfile

import pytest

from https_server import EXPIRED, Server, make_certificate

PROGRAM = pathlib.Path(os.environ["GET_QMB_VER"]).resolve()
PAGE = "/é 28?a"  # has bytes above 0x7F; its hash has a leading zero, which ENTRY drops
ENTRY = "RevisionInfo-54570B26F023BDA"  # of localhost and PAGE, whatever the port
RELEASE = "4.7.2 (2022-06-30)\n"  # what the page of a server announces
UNUSED_PORT = "1"  # nobody listens there, so a fetch fails at once
PR_SET_CHILD_SUBREAPER = 36  # see prctl(2)
Result = collections.namedtuple("Result", "status output errors")


class Tool:
    """The program, which trusts the server "self-signed", with a home directory of its own."""

    def __init__(self, home, certificates):
        self.home = pathlib.Path(home).resolve()
        self.cache = self.home / ".qvd_qmb_properties.ini"
        self.environment = {"HOME": str(self.home), "SSL_CERT_DIR": "/none",
                            "SSL_CERT_FILE": f"{certificates}/self-signed.pem",
                            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "")}
        self.started = []

    def start(self, *arguments, program=PROGRAM, **options):
        options = {"env": self.environment, "stdin": subprocess.DEVNULL} | options
        self.started.append(subprocess.Popen([program, *arguments], text=True, **options,
                                             stdout=subprocess.PIPE, stderr=subprocess.PIPE))
        return self.started[-1]

    def run(self, *arguments, **options):
        return result_of(self.start(*arguments, **options))

    def run_page(self, *arguments, port=UNUSED_PORT, **options):
        return self.run("--host=localhost", f"--port={port}", PAGE, *arguments, **options)


def result_of(run):
    output, errors = run.communicate()
    return Result(run.returncode, output, errors)


@pytest.fixture(scope="session")
def certificates(tmp_path_factory):
    """A folder with authorities, servers of theirs and a self-signed server."""
    folder = tmp_path_factory.mktemp("certificates")
    make_certificate(folder, "self-signed")
    for prefix, options in {"": {}, "old-": {"validity": EXPIRED}, "weak-": {"key": "rsa:1024"},
                          "rsa-": {"key": "rsa:2048"}}.items():
        make_certificate(folder, f"{prefix}root", kind="authority", **options)
        make_certificate(folder, f"{prefix}issuer", f"{prefix}root", kind="authority")
        make_certificate(folder, f"{prefix}server", f"{prefix}issuer")
    make_certificate(folder, "expired-server", "issuer", validity=EXPIRED)
    return folder


@pytest.fixture
def tool(certificates):
    with tempfile.TemporaryDirectory() as home:
        tool = Tool(home, certificates)
        yield tool
        for run in tool.started:
            run.kill()
            run.communicate()


@pytest.fixture
def serve(certificates):
    """Starts servers, which end with the test."""
    with contextlib.ExitStack() as servers:
        yield lambda *arguments, chain=["self-signed"], **options: servers.enter_context(
            Server(certificates, chain, *arguments, **options))


@pytest.fixture
def copies():
    """Makes background copies children of the test and ends those that it leaves; Linux only."""
    if sys.platform != "linux":
        pytest.skip("needs prctl and /proc of Linux")
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)
    yield
    for child in children():
        os.kill(child, signal.SIGKILL)
        os.waitpid(child, 0)


def children():
    """The process numbers of the children that the test has not waited for."""
    return [int(number) for number in
            pathlib.Path(f"/proc/self/task/{os.getpid()}/children").read_text().split()]


def exit_status_of_copy():
    """Waits until the background copy has ended."""
    return os.waitstatus_to_exitcode(os.waitpid(-1, 0)[1])
