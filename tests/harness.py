"""What the tests of the real program share."""
import contextlib
import ctypes
import fcntl
import os
import pathlib
import subprocess
import tempfile
import unittest

from https_server import Server, make_certificate

PROGRAM = os.path.realpath(os.environ["GET_QMB_VER"])
MODULE = os.path.realpath(os.environ["GET_QMB_VER_MODULE"])
PAGE = "/é 28?a"  # of bytes that count as negative, and with a zero in front of its hash
ENTRY = "RevisionInfo-54570B26F023BDA"  # of localhost and PAGE
PAGE_TEXT = "4.7.2 (2022-06-30)\n"  # what the server's page carries
UNUSED_PORT = "1"
PR_SET_CHILD_SUBREAPER = 36  # see prctl(2)


class ProgramTest(unittest.TestCase):
    def setUp(self):
        self.home = pathlib.Path(self.enterContext(tempfile.TemporaryDirectory()))
        self.cache = self.home / ".qvd_qmb_properties.ini"
        self.environment = {"HOME": str(self.home), "SSL_CERT_FILE": f"{self.home}/server.pem",
                            "SSL_CERT_DIR": "/none", "PATH": os.environ["PATH"],
                            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "")}

    def start(self, *arguments, program=PROGRAM, **options):
        options = {"stdin": subprocess.DEVNULL, "env": self.environment, **options}
        return subprocess.Popen([program, *arguments], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, text=True, **options)

    def start_page(self, *arguments, port=UNUSED_PORT, **options):
        return self.start("--host=localhost", f"--port={port}", PAGE, *arguments, **options)

    def result(self, process):
        """Exit status, standard output and standard error."""
        output, errors = process.communicate(timeout=60)
        return process.returncode, output, errors

    def run_program(self, *arguments, **options):
        return self.result(self.start(*arguments, **options))

    def run_page(self, *arguments, **options):
        return self.result(self.start_page(*arguments, **options))

    def server(self, *arguments, **options):
        """A server that the program trusts, although its certificate names another host."""
        make_certificate(self.home, "server")
        return Server(self.home, ["server"], *arguments, **options)


class CopyTest(ProgramTest):
    """Tests that wait for background copies or watch a run at the lock of the cache file."""

    @classmethod
    def setUpClass(cls):
        if os.uname().sysname != "Linux":
            raise unittest.SkipTest("needs prctl and /proc of Linux")
        ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)  # copies become our children

    def exit_status_of_copy(self):
        return os.waitstatus_to_exitcode(os.waitpid(-1, 0)[1])

    def held_lock(self):
        file = open(self.cache, "a")
        fcntl.lockf(file, fcntl.LOCK_EX)
        return file

    def start_at_lock(self, **options):
        """A run that has opened the cache file, whose lock the caller holds, and waits for it."""
        process = self.start_page(**options)
        for _ in range(100_000):
            with contextlib.suppress(OSError):  # the run may open and close others, or end
                descriptors = pathlib.Path(f"/proc/{process.pid}/fd").iterdir()
                if any(link.samefile(self.cache) for link in descriptors):
                    break
        return process
