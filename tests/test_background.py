import os
import pathlib
import resource
import shutil

from harness import ENTRY, MODULE, PAGE_TEXT, PROGRAM, CopyTest


class BackgroundCopy(CopyTest):
    def test_it_is_the_same_program_with_explicit_options(self):
        target = "--target=-a %1% b"
        with self.server() as server, open(self.home / "own file", "w+") as own_file:
            server.may_answer.clear()
            self.assertEqual(self.run_program(
                "--host=localhost", "--port", server.port, "--debug", target, cwd=self.home,
                stdin=own_file, pass_fds=[own_file.fileno()])[::2],
                (0, "No such file or directory\n"))
            self.assertTrue(server.requested.wait(30))
            children = pathlib.Path(f"/proc/self/task/{os.getpid()}/children").read_text()
            copy = pathlib.Path("/proc", children.strip())
            self.assertEqual((copy / "cmdline").read_text().split("\0")[:-1], [
                PROGRAM, "--host=localhost", f"--port={server.port}", target,
                f"--ini-dir={self.home}", "--blocking"])
            self.assertEqual(
                [os.readlink(copy / name) for name in (
                    "exe", "cwd", "fd/0", f"fd/{own_file.fileno()}", "fd/1", "fd/2", "fd/3")],
                [PROGRAM, str(self.home), own_file.name, own_file.name, *["/dev/null"] * 3])
            self.assertEqual(os.getpgid(int(copy.name)), os.getpgid(0))
            server.may_answer.set()
            self.assertEqual(self.exit_status_of_copy(), 0)

    def refuse(self, spoil, message, status=0, **options):
        """Lets a run go on to the start of its copy only when `spoil` has made that impossible."""
        with self.held_lock():
            run = self.start_at_lock(**options)
            spoil(run)
            self.assertEqual(self.result(run), (status, "", message))
        if status == 0:
            self.assertEqual(self.exit_status_of_copy(), 1)

    def test_no_process_is_left(self):
        self.cache.touch()
        for path in self.home, self.cache:
            path.chmod(0o777)
        self.refuse(lambda run: None, "Unable to start child process (first fork).\n", status=1,
                    # Nobody, who may not see PROGRAM, stands in for root, who has no limit.
                    program=shutil.copy(PROGRAM, self.home), user=os.geteuid() or "nobody",
                    preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NPROC, (0, 0)))

    def test_no_descriptor_is_left(self):
        self.refuse(lambda run: resource.prlimit(run.pid, resource.RLIMIT_NOFILE, (3, 3)),
                    "Unble to open /dev/null.\n")

    def test_standard_error_cannot_be_redirected(self):
        self.refuse(lambda run: resource.prlimit(run.pid, resource.RLIMIT_NOFILE, (2, 2)),
                    "dup2 call failed.\n", preexec_fn=lambda: os.close(0))

    def test_the_program_is_gone(self):
        program = shutil.copy(PROGRAM, self.home)
        self.refuse(lambda run: os.unlink(program), "", program=program)


class TreeMovedAndCalledThroughALink(CopyTest):
    def setUp(self):
        super().setUp()
        program = self.home / "a tree" / "bin" / "program"
        self.module = program.parent / os.path.relpath(MODULE, os.path.dirname(PROGRAM))
        for original, copy in (PROGRAM, program), (MODULE, self.module):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(original, copy)
        self.link = self.home / "link"
        self.link.symlink_to(program)

    def test_the_module_is_opened_to_fetch_and_only_then(self):
        with self.server() as server:
            self.assertEqual(self.run_page(port=server.port, program=self.link), (0, "", ""))
            self.assertEqual(self.exit_status_of_copy(), 0)
        self.assertEqual(self.run_page(program=self.link), (0, PAGE_TEXT, ""))
        with self.held_lock(), self.start_at_lock(program=self.link) as run:
            maps = pathlib.Path(f"/proc/{run.pid}/maps").read_text()
            run.kill()
        self.assertNotRegex(maps, "lib(ssl|crypto)")

    def test_without_the_module_stored_answers_are_printed_and_none_is_fetched(self):
        decoys = os.path.dirname(MODULE)
        self.environment |= {"PATH": f"{decoys}:/bin", "LD_LIBRARY_PATH": decoys}
        self.cache.write_text(f"[{ENTRY}]\ninfo=old\ntimestamp=5\n")
        module = self.module.resolve()
        for case, spoil, message in [
                ("missing", module.unlink, "No such file or directory"),
                ("another file", lambda: shutil.copy(PROGRAM, module), "cannot dynamically load")]:
            with self.subTest(case), self.server() as server:
                spoil()
                run = {"port": server.port, "program": self.link, "cwd": decoys}
                self.assertEqual(self.run_page(**run), (0, "old\n", ""))
                self.assertEqual(self.exit_status_of_copy(), 0)
                self.assertEqual(self.run_page("--blocking", **run), (0, "", ""))
                self.assertRegex(self.run_page("--blocking", "--debug", **run)[2],
                                 rf"\A.*{module}.*{message}.*\n\Z")
                self.assertEqual(server.requests, [])
