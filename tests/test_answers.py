import fcntl
import re
import time

from pytest import mark, param

from https_server import CUT, http_response
from program import ENTRY, PAGE, RELEASE, Result, linux_only

BLOCK = b"<!--ReleaseInfo9-->"  # announces "9"
NEVER_STALE = 2**63 - 1
INCOMPLETE = "beast.http:2\n"
TOO_LONG = "beast.http:9\n"
TRUNCATED = "asio.ssl.stream:1\n"


@mark.parametrize("content, text, timestamp", [
    param(f"# c\r\n\n[{ENTRY}]\r\n info = 1=a \ntimestamp= +9 \n", "1=a\n", 9, id="an edited file"),
    param(f"[{ENTRY}]\ntimestamp=-9999999999\n", "", -9999999999, id="no info, a 64-bit time"),
    param(f"[{ENTRY}]\ninfo=1\ntimestamp={'9' * 20}\n", "1\n", 0, id="a time of over 64 bits is 0"),
])
def test_what_a_cache_file_answers(user, content, text, timestamp):
    user.cache.write_text(content)
    result = user.run_page("--debug")
    assert (result.status, result.errors) == (0, "")
    start = f"ini file: {user.cache}\nini entry: {ENTRY}\n{text}Timestamp: {timestamp}\n"
    assert re.fullmatch(re.escape(start) + r"Now:       \d{10}\n", result.output)


@mark.parametrize("debug", [[], ["--debug"]], ids=["silently", "with --debug told why"])
def test_an_invalid_file_is_left_alone_by_a_store_and_emptied_by_a_read(user, serve, debug):
    user.cache.write_text("[E]\nno sign\n")
    error = "<unspecified file>(2): '=' character not found in line\n" if debug else ""
    assert user.run_page("--blocking", *debug, port=serve().port).errors == error  # stores only
    assert user.cache.read_text() == "[E]\nno sign\n"
    assert user.run_page(*debug).errors == error  # reads only
    assert user.cache.read_text() == ""


def test_a_store_keeps_all_but_comments_blank_lines_and_empty_sections(user, serve):
    entry = f"[{ENTRY}]\ntimestamp=5\nx=y\ninfo={RELEASE}"  # the same answer as that to come
    user.cache.write_text(f"; c\nk = v\n\n{entry}[F]\n i = 3\n[G]\n")
    assert user.run_page("--blocking", port=serve().port) == Result(0, RELEASE, errors="")
    stored = user.cache.read_text()
    timestamp = int(re.search(r"timestamp=(\d+)", stored)[1])
    assert time.time() - 60 < timestamp <= time.time()  # 60: the timeout in pytest.ini
    assert stored == f"k=v\n[{ENTRY}]\ntimestamp={timestamp}\nx=y\ninfo={RELEASE}[F]\ni=3\n"


def test_a_run_waits_250_ms_for_a_lock_and_then_does_without_the_file(user, serve):
    user.remember("4.7", NEVER_STALE)
    with open(user.cache, "a") as lock:
        fcntl.lockf(lock, fcntl.LOCK_EX)
        begin = time.monotonic()
        reading = user.reason()
        took = time.monotonic() - begin
        storing = user.reason("--blocking", port=serve().port)
        user.run_page("--debug", before=["sh", "-c", 'exec "$@" 2>&-', "sh"])  # no standard error
    assert reading == storing == "Unable to obtain file lock.\n"
    assert 0.5 <= took < 5  # two runs; ten times the wait is room for a busy machine
    assert user.run_page() == Result(0, "4.7\n", errors="")


@linux_only
def test_neither_a_failed_fetch_nor_a_full_device_is_an_error(user):
    user.remember("4.7", NEVER_STALE)
    reason = user.reason("--blocking", host="::1%1")  # an address with a zone
    assert re.fullmatch(r"connect: [\w ]+ \[system:\d+\]\n", reason)  # names no source file
    assert user.run_page("--blocking") == Result(0, "", errors="")
    assert user.run_page() == Result(0, "4.7\n", errors="")
    with open("/dev/full", "w") as full:
        assert user.run_page(stdout=full) == Result(0, None, errors="")


def test_a_request_has_exactly_these_bytes(user, serve):
    server = serve()
    user.run_page("--blocking", port=server.port)
    assert server.requests == [b"GET " + PAGE + b"?815 HTTP/1.0\r\nHost: 127.0.0.1\r\n"
                               b"User-Agent: Boost.Beast/330\r\n\r\n"]
    assert server.server_name == "127.0.0.1"


@mark.parametrize("response, text, errors", [
    param(b"HTTP/1.1 404 Oops\r\n\r\n" + BLOCK, "9\n", "", id="yes: an error page with a block"),
    param(b"HTTP/1.0 500 Oops\r\nX:" + b"x" * 8000 + b"\r\n\r\n" + BLOCK, "9\n", "",
          id="yes: a header of nearly 8 KiB"),
    param(http_response(bytes(8_000_000) + BLOCK), "9\n", "", id="yes: a body of nearly 8 MiB"),
    param(http_response(b"<!--ReleaseInfo\r\n 1\n\r2\0\t-->" + BLOCK), " 12\0\t\n", "",
          id="yes: the first block, all but its line ends"),
    param(http_response(b"<!--ReleaseInfo\r\n-->" + BLOCK), "", "", id="no: an empty first block"),
    param(http_response(b""), "", "'<!--ReleaseInfo' delimiter not found.\n", id="no: no block"),
    param(http_response(b"-->" + BLOCK[:-1]), "", "'-->' delimiter not found.\n", id="no: no end"),
    param(http_response(BLOCK)[:-1], "", INCOMPLETE, id="no: less than announced"),
    param([http_response(BLOCK), CUT], "", TRUNCATED, id="no: whole by its length, but cut then"),
    param([b"HTTP/1.0 200 OK\r\n\r\n" + BLOCK, CUT], "", TRUNCATED, id="no: cut, length unknown"),
    param(http_response(bytes(2**23) + BLOCK), "", TOO_LONG, id="no: more than 8 MiB"),
    param([b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n", b"\r"], "", INCOMPLETE,
          marks=mark.ndebug, id="no: chunks that lack their last byte, in two TLS records"),
])
def test_what_counts_as_an_answer(user, serve, response, text, errors):
    port = serve(response).port
    assert user.run_page("--blocking", port=port) == Result(0, text, errors="")
    assert user.cache.exists() == bool(text)
    assert user.run_page("--blocking", "--debug", port=port).errors == errors


def test_a_working_directory_that_is_gone_does_no_harm(user, serve, monkeypatch):
    gone = user.home / "gone"
    gone.mkdir()
    monkeypatch.chdir(gone)
    gone.rmdir()
    assert user.run_page("--blocking", port=serve().port) == Result(0, RELEASE, errors="")
