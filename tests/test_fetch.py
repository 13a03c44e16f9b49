from harness import ENTRY, PAGE_TEXT, ProgramTest, exit_status_of_copy
from https_server import http_response

BLOCK = b"<!--ReleaseInfo9-->"


class Fetch(ProgramTest):
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
                (http_response(bytes(9_000_000) + BLOCK), True, "", r"beast\.http:\d+\n"),
                (http_response(BLOCK), False, "", r"asio\.ssl\.stream:1\n"),
                (b"HTTP/1.0 200 OK\r\n\r\n" + BLOCK, False, "", r"asio\.ssl\.stream:1\n"),
                (b"nonsense\r\n\r\n", True, "", r"beast\.http:\d+\n"),
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
