"""What the tests share (certificates, the program and servers), and how a run of pytest ends."""
import contextlib
import ctypes
import os
import pathlib
import shutil
import sys
import tempfile

import pytest

TESTS = pathlib.Path(__file__).parent
sys.dont_write_bytecode = True
shutil.rmtree(TESTS / "__pycache__", ignore_errors=True)  # this file was compiled into it already
sys.path.insert(0, str(TESTS.parent / "scripts"))

from https_server import EXPIRED, FUTURE, Server, make_certificate, make_chain
from program import PROGRAM, User, wait_for_copies


def pytest_configure(config):
    if config.inipath != TESTS / "pytest.ini" or not PROGRAM.is_file():
        raise pytest.UsageError(f"run it as: GET_QMB_VER=path/to/get-qmb-ver pytest-3 {TESTS}")


def pytest_sessionfinish(session, exitstatus):
    reporter = session.config.pluginmanager.get_plugin("terminalreporter")
    if exitstatus == 0 and reporter and "skipped" in reporter.stats:
        session.exitstatus = 1 if os.environ.get("GET_QMB_VER_SKIP_FAILS") else 77  # skipped


@pytest.fixture(scope="session")
def certificates():
    """A folder with authorities, servers of theirs and a self-signed server."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name).resolve()
        make_certificate(folder, "self-signed")
        shutil.copy(folder / "self-signed.pem", folder / "0527de24.0")  # by "openssl x509 -hash"
        make_chain(folder)
        make_chain(folder, "weak-", root_bits=1024)
        make_certificate(folder, "expired-server", "issuer", validity=EXPIRED)
        for other, validity in {"expired-root": EXPIRED, "future-root": FUTURE}.items():
            make_certificate(folder, other, authority=True, subject="root", validity=validity)
        make_certificate(folder / "forged", "root", authority=True)
        (folder / "unusable.pem").write_text("no certificate\n")
        yield folder


@pytest.fixture
def user(certificates):
    linux = sys.platform == "linux"
    if linux:  # background copies become children of the test
        ctypes.CDLL(None).prctl(36, 1)  # PR_SET_CHILD_SUBREAPER, see prctl(2)
    with tempfile.TemporaryDirectory() as home:
        yield User(home, certificates)
        if linux:
            wait_for_copies()


@pytest.fixture
def serve(certificates):
    """Starts servers, which end with the test."""
    with contextlib.ExitStack() as servers:
        yield lambda *arguments, chain=["self-signed"], **options: servers.enter_context(
            Server(certificates, chain, *arguments, **options))
