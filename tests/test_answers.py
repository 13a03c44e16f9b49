import os
import re
import time

from harness import ENTRY, PAGE, PAGE_TEXT, CopyTest
from https_server import http_response

BLOCK = b"<!--ReleaseInfo9-->"
INVALID = "[E]\nno sign\n"
INVALID_ERROR = "<unspecified file>(2): '=' character not found in line\n"


class Answers(CopyTest):
    def test_a_fresh_answer_starts_nothing(self):
        self.cache.write_text(f"[{ENTRY}]\ninfo= 4.7 \ntimestamp={int(time.time()) - 86000}\n")
        status, output, errors = self.run_page("--debug")
        self.assertEqual((status, errors), (0, ""))
        self.assertRegex(output, rf"\Aini file: {self.cache}\nini entry: {ENTRY}\n4\.7\n"
                                 r"Timestamp: \d{10}\nNow:       \d{10}\n\Z")
        self.assertRaises(ChildProcessError, self.exit_status_of_copy)

    def test_what_an_entry_holds(self):
        for content, text, timestamp in [
                ("", "", 0),
                (f"# c\r\n\n[{ENTRY}]\r\n info = 1=a b \ntimestamp= +99 \n", "1=a b\n", 99),
                *[(f"[{ENTRY}]\ninfo=1\ntimestamp={written}\n", "1\n", read) for written, read in [
                    ("-5", -5), ("12x", 0), ("0x10", 0), ("9" * 20, 0), ("", 0), ("1 2", 0)]]]:
            with self.subTest(content=content):
                self.cache.write_text(content)
                status, output, errors = self.run_page("--debug")
                self.exit_status_of_copy()
                self.assertEqual((status, errors), (0, ""))
                self.assertIn(f"{ENTRY}\n{text}Timestamp: {timestamp}\nNow: ", output)

    def test_a_read_empties_an_invalid_file_and_a_store_leaves_it_alone(self):
        for arguments, errors in ([], ""), (["--debug"], INVALID_ERROR):
            with self.subTest(arguments=arguments), self.server() as server:
                self.cache.write_text(INVALID)
                stored = self.run_page("--blocking", *arguments, port=server.port)
                self.assertEqual((stored[2], self.cache.read_text()), (errors, INVALID))
                read = self.run_page(*arguments)
                self.exit_status_of_copy()
                self.assertEqual((read[2], self.cache.read_text()), (errors, ""))
        self.assertEqual(self.run_page("--blocking"), (0, "", ""))  # nobody answers

    def test_a_store_keeps_everything_else(self):
        for case, before, after in [
                ("new entry", "[F]\ninfo=3\n",
                 f"[F]\ninfo=3\n[{ENTRY}]\ninfo={PAGE_TEXT}timestamp=NOW\n"),
                ("known entry",
                 f"; c\nk = v\n\n[{ENTRY}]\ntimestamp=5\nx=y\ninfo=1\n[F]\n info = 3\n[G]\n",
                 f"k=v\n[{ENTRY}]\ntimestamp=NOW\nx=y\ninfo={PAGE_TEXT}[F]\ninfo=3\n")]:
            with self.subTest(case), self.server() as server:
                self.cache.write_text(before)
                self.assertEqual(self.run_page("--blocking", port=server.port), (0, PAGE_TEXT, ""))
                stored = self.cache.read_text()
                self.assertAlmostEqual(int(re.search(r"\d{10}", stored)[0]), time.time(), delta=5)
                self.assertEqual(re.sub(r"\d{10}", "NOW", stored), after)

    def test_an_answer_is_out_before_it_is_stored(self):
        os.mkfifo(self.cache)  # nobody reads from it, so the store never ends
        with self.server() as server, self.start_page("--blocking", port=server.port) as run:
            self.assertEqual(run.stdout.readline(), PAGE_TEXT)
            run.kill()

    def test_a_lock_is_waited_for_250_ms(self):
        self.cache.write_text(f"[{ENTRY}]\ninfo=4.7\ntimestamp=9999999999\n")
        refused = "Unable to obtain file lock.\n"
        with self.held_lock(), self.server() as server:
            begin = time.monotonic()
            self.assertEqual(self.run_page("--debug")[2], refused)
            self.assertTrue(0.25 <= time.monotonic() - begin < 0.9)
            self.exit_status_of_copy()
            status, output, errors = self.run_page("--blocking", "--debug", port=server.port)
            self.assertEqual((status, output.endswith(PAGE_TEXT), errors), (0, True, refused))
            waiting = self.start_at_lock()
        self.assertEqual(self.result(waiting), (0, "4.7\n", ""))

    def test_every_request_is_the_same_to_the_byte(self):
        with self.server() as server:
            self.run_page("--blocking", port=server.port)
        self.assertEqual(server.requests, [f"GET {PAGE}?815 HTTP/1.0\r\nHost: localhost\r\n"
                                           "User-Agent: Boost.Beast/330\r\n\r\n".encode()])
        self.assertEqual(server.server_name, "localhost")

    def fetch(self, response, **options):
        """The text and the errors of a fetch, which is stored if there is a text."""
        self.cache.unlink(missing_ok=True)
        with self.server(response, **options) as server:
            _, output, errors = self.run_page("--blocking", "--debug", port=server.port)
            text = "".join(output.splitlines(True)[2:])
            self.assertEqual(self.cache.exists(), bool(text))
            self.assertEqual(self.run_page("--blocking", port=server.port), (0, text, ""))
        return text, errors

    def test_what_counts_as_an_answer(self):
        for case, response, text, errors in [
                ("status 301", b"HTTP/1.1 301 Moved Permanently\r\n\r\n" + BLOCK, "9\n", ""),
                ("status 500", b"HTTP/1.0 500 Oops\r\n\r\n" + BLOCK, "9\n", ""),
                ("blanks", http_response(b"<!--ReleaseInfo\r\n 1\n2\t\r\n-->"), " 12\t\n", ""),
                ("long body", http_response(bytes(8_000_000) + BLOCK), "9\n", ""),
                ("empty text", http_response(b"<!--ReleaseInfo\r\n-->" + BLOCK), "", ""),
                ("no block", http_response(b""), "", "'<!--ReleaseInfo' delimiter not found.\n"),
                ("no end", http_response(b"-->" + BLOCK[:-1]), "", "'-->' delimiter not found.\n")]:
            with self.subTest(case):
                self.assertEqual(self.fetch(response), (text, errors))

    def test_what_counts_as_cut_short(self):
        for case, response, close_notify, error in [
                ("bare end", http_response(BLOCK), False, "asio.ssl.stream:1\n"),
                ("end before the length", http_response(BLOCK)[:-1], True, "beast.http:2\n"),
                ("more than 8 MiB", http_response(bytes(2**23) + BLOCK), True, "beast.http:9\n")]:
            with self.subTest(case):
                self.assertEqual(self.fetch(response, close_notify=close_notify), ("", error))
