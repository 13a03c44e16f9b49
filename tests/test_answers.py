import fcntl
import re
import time

from pytest import mark, param

from https_server import CUT, http_response
from program import ENTRY, PAGE, RELEASE, TESTS, available

INVALID = "[E]\nno sign\n"
BLOCK = b"<!--ReleaseInfo9-->"  # announces "9"
TRUNCATED = "asio.ssl.stream:1\n"


@mark.parametrize("content, text, timestamp", [
    param(f"# c\r\n\n[{ENTRY}]\r\n info = 1=a \ntimestamp= +9 \n", "1=a\n", 9, id="edited by hand"),
    param(f"[{ENTRY}]\ntimestamp={-2**63}\n", "", -2**63, id="no info, the least 64-bit time"),
    param(f"[{ENTRY}]\ninfo=1\ntimestamp={'9' * 20}\n", "1\n", 0, id="a time of over 64 bits is 0"),
])
def test_what_a_cache_file_answers_and_debug_tells(user, content, text, timestamp):
    user.cache.write_text(content)
    result = user.run_page("--debug")
    assert (result.returncode, result.stderr) == (0, "")
    start = f"ini file: {user.cache}\nini entry: {ENTRY}\n{text}Timestamp: {timestamp}\n"
    assert re.fullmatch(re.escape(start) + r"Now:       \d{10}\n", result.stdout)


@mark.parametrize("debug", [[], ["--debug"]], ids=["silently", "with --debug told why"])
def test_an_invalid_file_is_left_alone_by_a_store_and_emptied_by_a_read(user, serve, debug):
    user.cache.write_text(INVALID)
    error = "<unspecified file>(2): '=' character not found in line\n" if debug else ""
    store = user.run_page("--blocking", *debug, port=serve().port)
    assert (store.stderr, user.cache.read_text()) == (error, INVALID)
    read = user.run_page(*debug)
    assert (read.stderr, user.cache.read_text()) == (error, "")


@mark.parametrize("closed", ["2>&-", "<&- 2>&-"])
def test_no_message_goes_into_the_cache_file_when_standard_error_is_closed(user, closed):
    user.cache.write_text(INVALID)
    user.run_page("--debug", before=["sh", "-c", f'exec "$@" {closed}', "sh"])
    assert user.cache.read_text() == ""


def test_a_store_keeps_all_but_its_time_comments_blank_lines_and_empty_sections(user, serve):
    entry = f"[{ENTRY}]\ntimestamp=5\nx=y\ninfo={RELEASE}"  # the same answer as that to come
    user.cache.write_text(f"; c\nk = v\n\n{entry}[F]\n i = 3\n[G]\n")
    user.expect_answer(RELEASE, "--blocking", port=serve().port)
    stored = user.cache.read_text()
    timestamp = int(re.search(r"timestamp=(\d+)", stored)[1])
    assert time.time() - 60 < timestamp <= time.time()  # 60: the timeout in pytest.ini
    assert stored == f"k=v\n[{ENTRY}]\ntimestamp={timestamp}\nx=y\ninfo={RELEASE}[F]\ni=3\n"


def test_a_read_waits_250_ms_for_a_lock_and_without_it_nothing_is_read_or_stored(user, serve):
    user.remember("4.7")
    with open(user.cache, "a") as lock:
        fcntl.lockf(lock, fcntl.LOCK_EX)
        waits = []
        for _ in range(3):
            begin = time.monotonic()
            reading = user.reason()
            waits.append(time.monotonic() - begin)
        storing = user.reason("--blocking", answer=RELEASE, port=serve().port)
    assert reading == storing == "Unable to obtain file lock.\n"
    assert 0.5 <= min(waits) < 2  # for two runs each; a busy machine is not always busy
    user.expect_answer("4.7\n")


def test_a_failed_fetch_is_no_error_and_keeps_the_answer(user):
    user.remember("4.7")
    reason = user.reason("--blocking", port=1)
    assert re.fullmatch(r"connect: [\w ]+ \[system:\d+\]\n", reason)  # names no source file
    user.expect_answer("4.7\n")


def test_what_cannot_be_printed_is_stored_and_what_cannot_be_stored_is_printed(user, serve):
    user.remember("4.7")
    with open("/dev/full", "w") as full:
        user.expect_answer(None, stdout=full)
        user.expect_answer(None, "--blocking", stdout=full, port=serve().port)
    user.expect_answer(RELEASE)
    no_room = {"before": ["prlimit", "--fsize=0"], "restore_signals": False}  # of SIGXFSZ
    reason = user.reason("--blocking", answer=RELEASE, port=serve().port, **no_room)
    assert reason == "File too large\n"


def test_the_next_address_is_tried_and_the_entry_is_of_the_host_as_given(user, serve):
    etc = available("bwrap", "--dev-bind", "/", "/", "--ro-bind", TESTS / "two_addresses", "/etc")
    user.expect_answer(RELEASE, "--blocking", before=etc, host="QMB.test", port=serve().port)
    assert "[RevisionInfo-6A1BC9623731A97A]" in user.cache.read_text()  # of the host as given


def test_a_request_and_its_server_name_have_exactly_these_bytes(user, serve):
    server = serve()
    user.run_page("--blocking", port=server.port)
    # 815 is 3499211612 * 1001 >> 32: 0 to 1000, by the first number of an unseeded mt19937.
    assert server.requests == [b"GET " + PAGE + b"?815 HTTP/1.0\r\nHost: 127.0.0.1\r\n"
                               b"User-Agent: Boost.Beast/330\r\n\r\n"]
    assert server.server_name == "127.0.0.1"


@mark.parametrize("response, text, errors", [
    param(b"HTTP/1.1 404 Oops\r\nX:" + b"x" * 8000 + b"\r\n\r\n" + BLOCK, "9\n", "",
          id="yes: an error page with a block, behind a header of nearly 8 KiB"),
    param(http_response(bytes(2**23 - 99) + b"<!--ReleaseInfo\r\n 1\n\r2\0\t-->" + BLOCK),
          " 12\0\t\n", "", id="yes: the first block, after almost 8 MiB; only its line ends go"),
    param(http_response(b"<!--ReleaseInfo\r\n-->" + BLOCK), "", "", id="no: an empty first block"),
    param(http_response(b""), "", "'<!--ReleaseInfo' delimiter not found.\n", id="no: no block"),
    param(http_response(b"-->" + BLOCK[:-1]), "", "'-->' delimiter not found.\n", id="no: no end"),
    param(http_response(BLOCK)[:-1], "", "beast.http:2\n", id="no: less than announced"),
    param([http_response(BLOCK), CUT], "", TRUNCATED, id="no: whole by its length, but cut then"),
    param([b"HTTP/1.0 200 OK\r\n\r\n" + BLOCK, CUT], "", TRUNCATED, id="no: cut, length unknown"),
    param(http_response(bytes(2**23) + BLOCK), "", "beast.http:9\n", id="no: more than 8 MiB"),
    param([b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n", b"\r"], "",
          "beast.http:2\n", marks=mark.ndebug, id="no, and no abort: chunks cut at the end"),
])
def test_what_counts_as_an_answer_and_what_debug_tells(user, serve, response, text, errors):
    reason = user.reason("--blocking", answer=text, port=serve(response).port)
    assert reason == errors
    assert f"info={text}" in user.cache.read_text() if text else not user.cache.exists()


def test_a_fetch_needs_no_working_directory(user, serve):
    gone = ["sh", "-c", 'mkdir gone && cd gone && rmdir ../gone && exec "$@"', "sh"]
    user.expect_answer(RELEASE, "--blocking", port=serve().port, before=gone, cwd=user.home)
