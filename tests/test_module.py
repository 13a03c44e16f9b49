import os
import pathlib
import shutil

from harness import ENTRY, MODULE, PAGE_TEXT, PROGRAM, ProgramTest, exit_status_of_copy


class Module(ProgramTest):
    """Runs a copy of the program in a tree of the same shape elsewhere, through a link."""

    def setUp(self):
        super().setUp()
        program = self.home / "a tree" / "bin" / "program"
        self.module = program.parent / os.path.relpath(MODULE, os.path.dirname(PROGRAM))
        for original, copy in (PROGRAM, program), (MODULE, self.module):
            copy.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(original, copy)
        self.link = self.home / "link"
        self.link.symlink_to(program)

    def test_a_moved_tree_finds_it_only_to_fetch(self):
        with self.held_lock():
            run = self.start_at_lock(program=self.link)
            self.assertNotRegex(pathlib.Path(f"/proc/{run.pid}/maps").read_text(), "lib(ssl|crypto)")
            run.kill()
            run.communicate()
        with self.server() as server:
            self.assertEqual(self.run_page(port=server.port, program=self.link), (0, "", ""))
            self.assertEqual(exit_status_of_copy(), 0)
        self.assertEqual(self.run_page(program=self.link), (0, PAGE_TEXT, ""))

    def test_without_it_a_stored_answer_is_printed_and_none_is_fetched(self):
        decoys = self.home / "decoys"
        decoys.mkdir()
        shutil.copy(MODULE, decoys)
        self.environment |= {"PATH": f"{decoys}:{self.environment['PATH']}",
                             "LD_LIBRARY_PATH": str(decoys)}
        self.cache.write_text(f"[{ENTRY}]\ninfo=old\ntimestamp=5\n")
        whole = self.module.read_bytes()
        for case, content, message in [
                ("missing", None, "No such file or directory"),
                ("empty", b"", "cut short"),
                ("cut short", whole[:len(whole) // 2], "cut short"),
                ("garbage", bytes(100_000), "invalid ELF header"),
                ("another file", pathlib.Path(shutil.which("true")).read_bytes(), "load")]:
            with self.subTest(case), self.server() as server:
                self.module.unlink(missing_ok=True)
                if content is not None:
                    self.module.write_bytes(content)
                run = {"port": server.port, "program": self.link, "cwd": decoys}
                self.assertEqual(self.run_page(**run), (0, "old\n", ""))
                self.assertEqual(exit_status_of_copy(), 0)
                self.assertEqual(self.run_page("--blocking", **run), (0, "", ""))
                status, _, errors = self.run_page("--blocking", "--debug", **run)
                self.assertEqual(status, 0)
                self.assertRegex(errors, rf"\A.*{self.module.name}.*{message}.*\n\Z")
                self.assertEqual(server.requests, [])
