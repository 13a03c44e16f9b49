import os
import pathlib
import resource
import shutil

from pytest import mark

from conftest import (ENTRY, PAGE, PROGRAM, UNUSED_PORT, Result, children,
                      exit_status_of_copy, result_of)

pytestmark = mark.usefixtures("copies")


def test_the_copy_is_the_same_program_with_explicit_options_and_no_output(tool, serve):
    server = serve()
    server.may_answer.clear()
    target = "--target=-a %1% b"  # no option, no placeholder, one word
    with open(tool.home / "own file", "w+") as own_file:
        own_descriptor = own_file.fileno()
        result = tool.run("--host=localhost", "--port", server.port, "--debug", target,
                          cwd=tool.home, stdin=own_file, pass_fds=[own_descriptor])
    assert (result.status, result.errors) == (0, "No such file or directory\n")  # no cache file yet

    server.requested.wait()
    [copy] = children()
    process = pathlib.Path(f"/proc/{copy}")
    assert (process / "cmdline").read_text().split("\0")[:-1] == [
        str(PROGRAM), "--host=localhost", f"--port={server.port}", target,
        f"--ini-dir={tool.home}", "--blocking"]
    for descriptor in 0, own_descriptor:
        assert os.readlink(process / f"fd/{descriptor}") == own_file.name
    for descriptor in 1, 2, 3:  # 3 is the one by which the copy opened /dev/null
        assert os.readlink(process / f"fd/{descriptor}") == "/dev/null"
    assert os.getpgid(copy) == os.getpgid(0)

    server.may_answer.set()
    assert exit_status_of_copy() == 0


def start_printing(tool, **options):
    """A run that waits for a reader in the middle of its answer, before it starts its copy."""
    text = "4" * 100_000  # more than the 65,536 bytes that a pipe holds
    tool.cache.write_text(f"[{ENTRY}]\ninfo={text}\ntimestamp=5\n")
    for path in tool.cache, tool.home:
        path.chmod(0o777)  # for a run by the user "nobody"
    run = tool.start("--host=localhost", "--port", UNUSED_PORT, PAGE, **options)
    assert os.read(run.stdout.fileno(), 1) == b"4"
    return run


def test_an_answer_is_printed_although_no_copy_can_be_started(tool):
    # Root has no limit: the user "nobody" runs a copy, as PROGRAM may lie in a private folder.
    result = result_of(start_printing(
        tool, program=shutil.copy(PROGRAM, tool.home), user=os.geteuid() or "nobody",
        preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NPROC, (0, 0))))
    assert result == Result(1, "4" * 99_999 + "\n", "Unable to start child process (first fork).\n")


def test_a_copy_that_cannot_open_dev_null_ends(tool):
    run = start_printing(tool)
    resource.prlimit(run.pid, resource.RLIMIT_NOFILE, (3, 3))  # none but the standard descriptors
    assert result_of(run).errors == "Unble to open /dev/null.\n"  # sic
    assert run.returncode == 0
    assert exit_status_of_copy() == 1


def test_a_run_that_answers_does_not_load_openssl(tool):
    maps = pathlib.Path(f"/proc/{start_printing(tool).pid}/maps").read_text()
    assert "libssl" not in maps
    assert "libcrypto" not in maps


def test_without_its_module_the_program_answers_but_fetches_nothing(tool, serve):
    program = shutil.copy(PROGRAM, tool.home)
    tool.cache.write_text(f"[{ENTRY}]\ninfo=old\ntimestamp=5\n")
    port = serve().port
    assert tool.run_page(program=program, port=port) == Result(0, "old\n", errors="")
    assert exit_status_of_copy() == 0
    result = tool.run_page("--blocking", "--debug", program=program, port=port)
    assert result.status == 0
    assert "/get-qmb-ver/fetch.so" in result.errors
    assert result.errors.count("\n") == 1
