import contextlib
import os
import pathlib
import resource
import shutil

from harness import PROGRAM, ProgramTest, exit_status_of_copy


def child():
    for status in pathlib.Path("/proc").glob("[0-9]*/status"):
        with contextlib.suppress(OSError):  # others come and go
            if f"\nPPid:\t{os.getpid()}\n" in status.read_text():
                return status.parent


class BackgroundCopy(ProgramTest):
    def test_it_is_the_same_program_with_explicit_options(self):
        target = "--target=-a %1% b"
        with self.server() as server:
            server.may_answer.clear()
            self.assertEqual(self.run_program("--host=localhost", "--port", server.port, "--debug",
                                              target, cwd=self.home)[0], 0)
            self.assertTrue(server.requested.wait(30))
            copy = child()
            self.assertEqual((copy / "cmdline").read_text().split("\0")[:-1], [
                PROGRAM, "--host=localhost", f"--port={server.port}", target,
                f"--ini-dir={self.home}", "--blocking"])
            self.assertEqual([os.readlink(copy / name) for name in (
                "exe", "cwd", "fd/0", "fd/1", "fd/2", "fd/3")],
                [PROGRAM, str(self.home), *["/dev/null"] * 4])
            self.assertEqual(os.getpgid(int(copy.name)), os.getpgid(0))
            server.may_answer.set()
            self.assertEqual(exit_status_of_copy(), 0)

    def test_a_refresher_that_cannot_start(self):
        def allow_descriptors(limit):
            return lambda run: resource.prlimit(run.pid, resource.RLIMIT_NOFILE, (limit, limit))

        program = shutil.copy(PROGRAM, self.home)
        self.cache.touch()
        for path in self.home, self.cache:
            path.chmod(0o777)
        # Nobody stands in for root, whose processes are not limited.
        without_fork = {"user": os.geteuid() or "nobody", "preexec_fn": lambda: resource.setrlimit(
            resource.RLIMIT_NPROC, (0, 0))}
        for options, spoil, status, message in [
                (without_fork, lambda run: None, 1,
                 "Unable to start child process (first fork).\n"),
                ({}, allow_descriptors(3), 0, "Unble to open /dev/null.\n"),
                ({"preexec_fn": lambda: os.close(0)}, allow_descriptors(2), 0,
                 "dup2 call failed.\n"),
                ({}, lambda run: os.unlink(program), 0, "")]:
            with self.held_lock():
                run = self.start_at_lock(program=program, **options)
                spoil(run)
                self.assertEqual(self.result(run), (status, "", message))
            if status == 0:
                self.assertEqual(exit_status_of_copy(), 1)
