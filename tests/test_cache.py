import os
import time

from harness import ENTRY, PAGE_TEXT, ProgramTest, exit_status_of_copy


class Cache(ProgramTest):
    def test_a_fresh_answer_starts_nothing(self):
        self.cache.write_text(f"[{ENTRY}]\ninfo= 4.7 \ntimestamp={int(time.time()) - 86000}\n")
        status, output, errors = self.run_page("--debug")
        self.assertEqual((status, errors), (0, ""))
        self.assertRegex(output, rf"\Aini file: {self.cache}\nini entry: {ENTRY}\n4\.7\n"
                                 r"Timestamp: \d{10}\nNow:       \d{10}\n\Z")
        self.assertRaises(ChildProcessError, exit_status_of_copy)

    def read_stale(self, content=None):
        """The lines between "ini entry" and "Now", and the errors, for a file's content."""
        if content is not None:
            self.cache.write_text(content)
        status, output, errors = self.run_page("--debug")
        exit_status_of_copy()
        return status, output.splitlines()[2:-1], errors

    def test_what_an_entry_holds(self):
        nothing = ["Timestamp: 0"]
        self.assertEqual(self.read_stale(), (0, nothing, "No such file or directory\n"))
        self.assertEqual(self.read_stale(""), (0, nothing, ""))
        self.assertEqual(
            self.read_stale(f"# c\r\n\n[{ENTRY}]\r\n info = 1=a b \ntimestamp= +99 \n"),
            (0, ["1=a b", "Timestamp: 99"], ""))
        for bad in "12x", "0x10", "9" * 20, "", "1 2":
            self.assertEqual(self.read_stale(f"[{ENTRY}]\ninfo=1\ntimestamp={bad}\n"),
                             (0, ["1", *nothing], ""))

    def test_a_read_empties_an_invalid_file_and_a_store_leaves_it_alone(self):
        with self.server() as server:
            for invalid, message in [("[E]\nno sign\n", "(2): '=' character not found in line"),
                                     ("[E]\na=1\n[E]\na=2\n", "(3): duplicate section name")]:
                self.cache.write_text(invalid)
                errors = f"<unspecified file>{message}\n"
                stored = self.run_page("--blocking", "--debug", port=server.port)
                self.assertEqual(stored[2], errors)
                self.assertEqual(self.cache.read_text(), invalid)
                self.assertEqual(self.read_stale(invalid), (0, ["Timestamp: 0"], errors))
                self.assertEqual(self.cache.read_text(), "")

    def test_a_store_keeps_everything_else(self):
        new = f"[{ENTRY}]\ninfo={PAGE_TEXT}timestamp=NOW\n"
        with self.server() as server:
            for before, after in [
                    (None, new), ("[F]\ninfo=3\n", "[F]\ninfo=3\n" + new),
                    (f"; c\nk = v\n\n[{ENTRY}]\ntimestamp=5\nx=y\ninfo=1\n[F]\n info = 3\n[G]\n",
                     f"k=v\n[{ENTRY}]\ntimestamp=NOW\nx=y\ninfo={PAGE_TEXT}[F]\ninfo=3\n")]:
                if before:
                    self.cache.write_text(before)
                begin = int(time.time())
                self.assertEqual(self.run_page("--blocking", port=server.port), (0, PAGE_TEXT, ""))
                stored = self.cache.read_text()
                for now in range(begin, int(time.time()) + 1):
                    stored = stored.replace(str(now), "NOW")
                self.assertEqual(stored, after)

    def test_an_answer_is_out_before_it_is_stored(self):
        os.mkfifo(self.cache)  # nobody reads from it, so the store never ends
        page = "--host=localhost", "/page", "--blocking"
        with self.server() as server, self.start(*page, "--port", server.port) as run:
            self.assertEqual(run.stdout.readline(), PAGE_TEXT)
            run.kill()

    def test_a_lock_is_waited_for_250_ms(self):
        self.cache.write_text(f"[{ENTRY}]\ninfo=4.7\ntimestamp=9999999999\n")
        refused = "Unable to obtain file lock.\n"
        with self.held_lock(), self.server() as server:
            begin = time.monotonic()
            self.assertEqual(self.read_stale(), (0, ["Timestamp: 0"], refused))
            self.assertTrue(0.25 <= time.monotonic() - begin < 1.5)
            status, output, errors = self.run_page("--blocking", "--debug", port=server.port)
            self.assertEqual((status, output.endswith(PAGE_TEXT), errors), (0, True, refused))
            waiting = self.start_at_lock()
        self.assertEqual(self.result(waiting), (0, "4.7\n", ""))
