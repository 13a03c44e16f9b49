import os
import re
import time

from harness import ENTRY, PAGE_TEXT, ProgramTest, exit_status_of_copy
from https_server import http_response

BLOCK = b"<!--ReleaseInfo9-->"


class Answers(ProgramTest):
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
        invalid = "[E]\nno sign\n"
        errors = "<unspecified file>(2): '=' character not found in line\n"
        self.cache.write_text(invalid)
        with self.server() as server:
            stored = self.run_page("--blocking", "--debug", port=server.port)
        self.assertEqual((stored[2], self.cache.read_text()), (errors, invalid))
        self.assertEqual(self.read_stale(), (0, ["Timestamp: 0"], errors))
        self.assertEqual(self.cache.read_text(), "")

    def test_a_store_keeps_everything_else(self):
        for before, after in [
                ("[F]\ninfo=3\n", f"[F]\ninfo=3\n[{ENTRY}]\ninfo={PAGE_TEXT}timestamp=NOW\n"),
                (f"; c\nk = v\n\n[{ENTRY}]\ntimestamp=5\nx=y\ninfo=1\n[F]\n info = 3\n[G]\n",
                 f"k=v\n[{ENTRY}]\ntimestamp=NOW\nx=y\ninfo={PAGE_TEXT}[F]\ninfo=3\n")]:
            self.cache.write_text(before)
            begin = int(time.time())
            with self.server() as server:
                self.assertEqual(self.run_page("--blocking", port=server.port), (0, PAGE_TEXT, ""))
            stored = self.cache.read_text()
            self.assertIn(int(re.search(r"\d{10}", stored)[0]), range(begin, int(time.time()) + 1))
            self.assertEqual(re.sub(r"\d{10}", "NOW", stored), after)

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

    def test_a_request_is_the_same_to_the_byte(self):
        with self.server() as server:
            for target in "index.html", "/a b?c":
                self.assertEqual(self.run_program("--host=localhost", "--port", server.port, target,
                                                  "--blocking"), (0, PAGE_TEXT, ""))
                self.assertEqual(server.requests.pop(), f"GET {target}?815 HTTP/1.0\r\n"
                                 "Host: localhost\r\nUser-Agent: Boost.Beast/330\r\n\r\n".encode())
        self.assertEqual(server.server_name, "localhost")

    def test_what_comes_of_an_answer(self):
        for response, close_notify, text, errors in [
                (b"HTTP/1.1 404 Not Found\r\n\r\n" + BLOCK, True, "9\n", ""),
                (http_response(bytes(8_000_000) + BLOCK), True, "9\n", ""),
                (http_response(BLOCK), False, "", r"asio\.ssl\.stream:1\n"),
                (b"HTTP/1.0 200 OK\r\n\r\n" + BLOCK, False, "", r"asio\.ssl\.stream:1\n"),
                (http_response(b""), True, "", "'<!--ReleaseInfo' delimiter not found.\n"),
                (http_response(b"-->" + BLOCK[:-1]), True, "", "'-->' delimiter not found.\n"),
                (http_response(b"<!--ReleaseInfo\r\n-->" + BLOCK), True, "", "")]:
            with self.server(response, close_notify=close_notify) as server:
                result = self.run_page("--blocking", "--debug", port=server.port)
                self.assertEqual((result[0], "".join(result[1].splitlines(True)[2:])), (0, text))
                self.assertRegex(result[2], rf"\A{errors}\Z")
                self.assertEqual(self.run_page("--blocking", port=server.port), (0, text, ""))
            self.assertEqual(self.cache.exists(), bool(text))
            self.cache.unlink(missing_ok=True)

    def test_a_stale_answer_is_printed_and_refreshed(self):
        self.cache.write_text(f"[{ENTRY}]\ninfo=old\ntimestamp=5\n")
        with self.server(http_response(b"<!--ReleaseInfo\r\n 1\n2\t\r\n-->")) as server:
            self.assertEqual(self.run_page(port=server.port), (0, "old\n", ""))
            self.assertEqual(exit_status_of_copy(), 0)
            self.assertEqual(self.run_page(port=server.port), (0, "12\n", ""))
        self.assertEqual(len(server.requests), 1)
