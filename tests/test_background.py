import os
import pathlib
import re
import shutil
import time

from pytest import mark, param

from program import HOST, PROGRAM, RELEASE, copies, available, wait_for_copies


def test_in_an_ini_dir_a_copy_stores_by_link_and_umask_what_the_next_run_prints(user, serve):
    user.cache.symlink_to("dotfile")
    user.environment["HOME"] = "/none"
    options = {"port": serve().port, "cwd": user.home, "umask": 0o027}
    user.expect_answer("", "--ini-dir=.", **options)
    first = wait_for_copies()
    user.expect_answer(RELEASE, "--ini-dir=.", **options)
    second = wait_for_copies()
    assert (first, second) == ([0], [])
    assert user.cache.is_symlink()
    assert user.cache.stat().st_mode & 0o777 == 0o640


def test_no_run_waits_for_its_copy_which_has_explicit_options_no_output_and_inherits_the_rest(user):
    certificates = user.home / "certificates"
    os.mkfifo(certificates)  # holds the copy before it connects
    user.environment["SSL_CERT_FILE"] = str(certificates)
    target = "--target=-a %1% b"  # no option, no placeholder, one word
    with open(user.home / "own file", "w+") as own:
        result = user.run("--host", HOST, "--debug", target, stdin=own, cwd=user.home,
                          pass_fds=[own.fileno()], restore_signals=False)  # pytest ignores some
        assert (result.returncode, result.stderr) == (0, "No such file or directory\n")
        assert not user.cache.exists()  # nor made by a run that only reads

        with open(certificates, "w"):
            [copy] = copies()
            process = pathlib.Path(f"/proc/{copy}")
            assert (process / "cmdline").read_text().split("\0")[:-1] == [
                str(PROGRAM), f"--host={HOST}", "--port=443", target, f"--ini-dir={user.home}",
                "--blocking"]
            links = dict.fromkeys(["fd/1", "fd/2", "fd/3"], "/dev/null")  # by 3 the copy opened it
            links |= {"cwd": str(user.home), "fd/0": own.name, f"fd/{own.fileno()}": own.name}
            assert {name: os.readlink(process / name) for name in links} == links
            inherited = re.compile(r"(?:SigBlk|SigIgn|NSpgid|NSsid):.*")
            ours = pathlib.Path("/proc/self/status").read_text()
            assert inherited.findall((process / "status").read_text()) == inherited.findall(ours)


@mark.parametrize("age, started", [
    param(86_340, 0, id="no: a minute less than a day old"),
    param(86_460, 1, id="yes: a minute more"),
    param(-2**63, 0, id="no: from the future, as far away as can be"),
])
def test_a_copy_is_started_when_the_answer_is_over_a_day_old(user, age, started):
    user.remember("4.7", min(int(time.time()) - age, 2**63 - 1))
    user.expect_answer("4.7\n")
    copies_started = len(wait_for_copies())
    assert copies_started == started


def test_where_no_copy_can_start_an_answer_is_printed_but_the_run_fails(user):
    # "env true" is the first process in the PID namespace: after its end there can be no other.
    last = [*available("unshare", "--user", "--pid"), "sh", "-c", 'env true; exec "$@"', "sh"]
    user.environment["ASAN_OPTIONS"] = "detect_leaks=0"  # the check would need a process
    user.remember("4.7", 5)
    result = user.run_page(before=last)
    assert (result.returncode, result.stdout) == (1, "4.7\n")
    assert result.stderr == "Unable to start child process (first fork).\n"


def test_a_program_without_its_module_names_the_one_place_and_still_answers(user):
    user.program.unlink()
    shutil.copy(PROGRAM, user.program)
    library = re.search(r"/\S+/libc\.\S+", pathlib.Path("/proc/self/maps").read_text())[0]
    (user.home / "fetch.so").symlink_to(library)  # can be opened, but is not the module
    user.environment["LD_LIBRARY_PATH"] = str(user.home)
    reason = user.reason("--blocking", cwd=user.home)
    assert re.fullmatch(r"/.*/get-qmb-ver/fetch\.so: cannot open.* No such file.*\n", reason)
    user.remember("4.7", 5)
    user.expect_answer("4.7\n")
