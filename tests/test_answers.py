import fcntl
import os
import re
import time

from pytest import mark, param

from conftest import ENTRY, PAGE, RELEASE, Result, children
from https_server import http_response

pytestmark = mark.usefixtures("copies")
BLOCK = b"<!--ReleaseInfo9-->"  # announces "9"


def test_a_fresh_answer_is_printed_and_starts_nothing(tool):
    tool.cache.write_text(f"[{ENTRY}]\ninfo=4.7\ntimestamp={int(time.time()) - 23 * 3600}\n")
    result = tool.run_page("--debug")
    assert (result.status, result.errors) == (0, "")
    assert re.fullmatch(rf"ini file: {tool.cache}\nini entry: {ENTRY}\n4\.7\n"
                        r"Timestamp: \d{10}\nNow:       \d{10}\n", result.output)
    assert not children()


@mark.parametrize("content, text, timestamp", [
    param("", "", 0, id="an empty file holds none"),
    param(f"# c\r\n\n[{ENTRY}]\r\n info = 1=a b \ntimestamp= +99 \n", "1=a b\n", 99,
          id="comments, blanks and foreign line ends do no harm"),
    param(f"[{ENTRY}]\ntimestamp=-9999999999\n", "", -9999999999, id="a negative 64-bit time"),
    param(f"[{ENTRY}]\ninfo=1\ntimestamp={'9' * 20}\n", "1\n", 0, id="a time of over 64 bits is 0"),
    param(f"[{ENTRY}]\ninfo=1\ntimestamp=12x\n", "1\n", 0, id="a time that is no number is 0"),
])
def test_what_a_cache_file_answers(tool, content, text, timestamp):
    tool.cache.write_text(content)
    result = tool.run_page("--debug")
    assert (result.status, result.errors) == (0, "")
    assert f"{ENTRY}\n{text}Timestamp: {timestamp}\nNow: " in result.output


def test_an_invalid_file_refuses_stores_until_a_read_empties_it(tool, serve):
    tool.cache.write_text("[E]\nno sign\n")
    error = "<unspecified file>(2): '=' character not found in line\n"
    assert tool.run_page("--blocking", "--debug", port=serve().port).errors == error  # stores only
    assert tool.cache.read_text() == "[E]\nno sign\n"
    assert tool.run_page("--debug").errors == error  # reads only
    assert tool.cache.read_text() == ""


def test_a_store_keeps_all_but_comments_blank_lines_and_empty_sections(tool, serve):
    tool.cache.write_text(f"; c\nk = v\n\n[{ENTRY}]\ntimestamp=5\nx=y\ninfo=1\n[F]\n i = 3\n[G]\n")
    assert tool.run_page("--blocking", port=serve().port) == Result(0, RELEASE, errors="")
    stored = tool.cache.read_text()
    timestamp = int(re.search(r"timestamp=(\d+)", stored)[1])
    assert time.time() - 60 < timestamp <= time.time()  # 60: the timeout in pytest.ini
    assert stored == f"k=v\n[{ENTRY}]\ntimestamp={timestamp}\nx=y\ninfo={RELEASE}[F]\ni=3\n"


def test_an_answer_is_printed_before_it_is_stored(tool, serve):
    os.mkfifo(tool.cache)  # nobody writes to it, so the store waits for ever
    run = tool.start("--blocking", "--host=localhost", "--port", serve().port, "p")
    assert run.stdout.readline() == RELEASE


def test_a_lock_is_waited_for_250_ms(tool, serve):
    tool.cache.write_text(f"[{ENTRY}]\ninfo=4.7\ntimestamp=9999999999\n")  # never stale
    with open(tool.cache, "a") as lock:
        fcntl.lockf(lock, fcntl.LOCK_EX)
        begin = time.monotonic()
        reading = tool.run_page("--debug")
        took = time.monotonic() - begin
        storing = tool.run_page("--blocking", "--debug", port=serve().port)
    assert 0.25 <= took < 2.5  # ten times the wait: room for the run itself on a busy machine
    assert reading.errors == storing.errors == "Unable to obtain file lock.\n"
    assert storing.output.endswith(RELEASE)
    assert tool.run_page() == Result(0, "4.7\n", errors="")


def test_a_request_has_exactly_these_bytes(tool, serve):
    server = serve()
    tool.run_page("--blocking", port=server.port)
    assert server.requests == [f"GET {PAGE}?815 HTTP/1.0\r\nHost: localhost\r\n"
                               "User-Agent: Boost.Beast/330\r\n\r\n".encode()]
    assert server.server_name == "localhost"


@mark.parametrize("response, text, errors", [
    param(b"HTTP/1.1 301 Moved\r\n\r\n" + BLOCK, "9\n", "", id="yes: a redirection with a block"),
    param(b"HTTP/1.0 200 OK\r\nX:" + b"x" * 8000 + b"\r\n\r\n" + BLOCK, "9\n", "",
          id="yes: a header of nearly 8 KiB"),
    param(http_response(bytes(8_000_000) + BLOCK), "9\n", "", id="yes: a body of nearly 8 MiB"),
    param(http_response(b"<!--ReleaseInfo\r\n 1\n\r2\0\t-->" + BLOCK), " 12\0\t\n", "",
          id="yes: the first block, all but its line ends"),
    param(http_response(b"<!--ReleaseInfo\r\n-->" + BLOCK), "", "", id="no: an empty first block"),
    param(http_response(b""), "", "'<!--ReleaseInfo' delimiter not found.\n", id="no: no block"),
    param(http_response(b"-->" + BLOCK[:-1]), "", "'-->' delimiter not found.\n", id="no: no end"),
    param(http_response(BLOCK)[:-1], "", "beast.http:2\n", id="no: less than announced"),
    param(http_response(bytes(2**23) + BLOCK), "", "beast.http:9\n", id="no: more than 8 MiB"),
    param([b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n", b"\r"], "",
          "beast.http:2\n", marks=mark.ndebug, id="no: a last chunk cut short in a second record"),
])
def test_what_counts_as_an_answer(tool, serve, response, text, errors):
    port = serve(response).port
    assert tool.run_page("--blocking", port=port) == Result(0, text, errors="")
    assert tool.cache.exists() == bool(text)
    assert tool.run_page("--blocking", "--debug", port=port).errors == errors


def test_a_working_directory_that_is_gone_does_no_harm(tool, serve):
    gone = tool.home / "gone"
    gone.mkdir()
    result = tool.run_page("--blocking", port=serve().port, cwd=gone, preexec_fn=gone.rmdir)
    assert result == Result(0, RELEASE, errors="")


def test_a_response_that_ends_without_close_notify_is_no_answer(tool, serve):
    port = serve(http_response(BLOCK), close_notify=False).port
    assert tool.run_page("--blocking", port=port) == Result(0, "", errors="")
    assert tool.run_page("--blocking", "--debug", port=port).errors == "asio.ssl.stream:1\n"
    assert not tool.cache.exists()
