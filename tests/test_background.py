import os
import pathlib
import re
import shutil
import stat
import time

from pytest import mark, param

from program import HOST, PROGRAM, RELEASE, Result, copies, linux_only, namespace, wait_for_copies

pytestmark = linux_only


def test_the_first_run_starts_a_copy_that_fetches_what_the_second_prints(user, serve):
    settings = user.home / "settings"
    settings.mkdir()
    link = settings / user.cache.name
    link.symlink_to("../dotfile")
    options = {"port": serve().port, "cwd": settings, "umask": 0o027}
    assert user.run_page("--ini-dir=.", **options) == Result(0, "", errors="")
    assert wait_for_copies() == [0]
    assert user.run_page("--ini-dir=.", **options) == Result(0, RELEASE, errors="")
    assert wait_for_copies() == []
    assert link.is_symlink()
    assert stat.filemode(link.stat().st_mode) == "-rw-r-----"


def test_the_copy_is_the_same_program_with_explicit_options_and_no_output(user):
    certificates = user.home / "certificates"
    os.mkfifo(certificates)  # holds the copy before it connects
    user.environment["SSL_CERT_FILE"] = str(certificates)
    target = "--target=-a %1% b"  # no option, no placeholder, one word
    with open(user.home / "own file", "w+") as own_file:
        result = user.run("--host", HOST, "--debug", target, stdin=own_file)
    assert (result.status, result.errors) == (0, "No such file or directory\n")  # no cache file yet

    with open(certificates, "w"):
        [copy] = copies()
        process = pathlib.Path(f"/proc/{copy}")
        assert (process / "cmdline").read_text().split("\0")[:-1] == [
            str(PROGRAM), f"--host={HOST}", "--port=443", target, f"--ini-dir={user.home}",
            "--blocking"]
        assert os.readlink(process / "fd/0") == own_file.name
        for descriptor in 1, 2, 3:  # 3 is the one by which the copy opened /dev/null
            assert os.readlink(process / f"fd/{descriptor}") == "/dev/null"
        files = (process / "maps").read_text()
        assert "/libssl.so" in files
        module = re.search(r"/.*/get-qmb-ver/fetch\.so", files)[0]
        assert os.stat(module).st_mode & 0o444 == PROGRAM.stat().st_mode & 0o444


@mark.parametrize("timestamp, started", [
    param(lambda now: now - 86_400, 0, id="no: a day old"),
    param(lambda now: now - 86_401, 1, id="yes: a second older"),
    param(lambda now: 2**63 - 1, 0, id="no: from the future"),
])
def test_an_answer_is_refreshed_when_over_a_day_old(user, timestamp, started):
    now, seen = 0, None
    while not now == seen == int(time.time()):  # until a run began and ended in one second
        wait_for_copies()
        now = int(time.time())
        user.remember("4.7", timestamp(now))
        seen = int(user.run_page("--debug").output.split()[-1])
    assert len(wait_for_copies()) == started


def test_without_a_copy_an_answer_is_printed_but_the_run_fails(user):
    # "env true" is the first process in the PID namespace: after its end there can be no other.
    last = [*namespace("unshare", "--user", "--pid"), "sh", "-c", 'env true; exec "$@"', "sh"]
    user.environment["ASAN_OPTIONS"] = "detect_leaks=0"  # the check would need a process
    user.remember("4.7", 5)
    result = user.run_page(before=last)
    assert result == Result(1, "4.7\n", "Unable to start child process (first fork).\n")


def test_the_module_is_looked_for_in_one_place_that_the_message_names(user):
    user.program.unlink()
    shutil.copy(PROGRAM, user.program)
    library = re.search(r"/\S+/libc\.\S+", pathlib.Path("/proc/self/maps").read_text())[0]
    (user.home / "fetch.so").symlink_to(library)  # can be opened, but is not the module
    user.environment["LD_LIBRARY_PATH"] = str(user.home)
    reason = user.reason("--blocking", cwd=user.home)
    assert re.fullmatch(r"/.*/get-qmb-ver/fetch\.so: cannot open.* No such file.*\n", reason)
    user.remember("4.7", 5)
    assert user.run_page() == Result(0, "4.7\n", errors="")
