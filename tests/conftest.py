"""What the tests share (certificates, users and servers), and how a run of pytest ends."""
import contextlib
import ctypes
import os
import pathlib
import shutil
import signal
import sys
import tempfile

import pytest

sys.dont_write_bytecode = True
pytest.register_assert_rewrite("program")  # so that its failures show both sides, too

from https_server import EXPIRED, Server, make_certificate, make_chain
from program import PROGRAM, TESTS, User, copies, wait_for_copies

shutil.rmtree(TESTS / "__pycache__", ignore_errors=True)  # this file was compiled into it already


def pytest_configure(config):
    if config.inipath != TESTS / "pytest.ini" or not PROGRAM.is_file() or sys.platform != "linux":
        raise pytest.UsageError(f"on Linux: GET_QMB_VER=path/to/get-qmb-ver pytest-3 {TESTS}")
    # Background copies become children of the test: PR_SET_CHILD_SUBREAPER, see prctl(2).
    ctypes.CDLL(None).prctl(36, 1)


def pytest_sessionfinish(session, exitstatus):
    reporter = session.config.pluginmanager.get_plugin("terminalreporter")
    if exitstatus == 0 and reporter and "skipped" in reporter.stats:
        session.exitstatus = 1 if os.environ.get("GET_QMB_VER_SKIP_FAILS") else 77  # skipped


@pytest.fixture(scope="session")
def certificates():
    """A folder with authorities, servers of theirs and a self-signed server."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        make_certificate(folder, "self-signed", rsa_bits=2048)
        make_chain(folder)
        make_chain(folder, "weak-", root_bits=1024)
        make_certificate(folder, "expired-root", authority=True, subject="root", validity=EXPIRED)
        make_certificate(folder / "forged", "root", authority=True)
        (folder / "unusable.pem").write_text("no certificate\n")
        yield folder


@pytest.fixture
def user(certificates):
    with tempfile.TemporaryDirectory() as home:
        yield User(home, certificates)
        for copy in copies():  # after a failure, they may wait for what never comes
            os.kill(copy, signal.SIGKILL)
        wait_for_copies()


@pytest.fixture
def serve(certificates):
    """Starts servers, which end with the test and have none but old ciphers (CBC) by default."""
    with contextlib.ExitStack() as servers:
        def serve(*arguments, chain="self-signed", ciphers="AES+SHA1:@SECLEVEL=0", **options):
            server = Server(certificates, chain.split(), *arguments, ciphers=ciphers, **options)
            return servers.enter_context(server)
        yield serve
