import os
import pathlib
import resource
import shutil

from pytest import mark

from conftest import (ENTRY, PAGE, PROGRAM, UNUSED_PORT, Result, children,
                      exit_status_of_copy, result_of)

pytestmark = mark.usefixtures("copies")


def test_the_copy_is_the_same_program_with_explicit_options(tool, serve):
    server = serve()
    server.may_answer.clear()
    target = "--target=-a %1% b"
    with open(tool.home / "own file", "w+") as own_file:
        own_descriptor = own_file.fileno()
        result = tool.run("--host=localhost", "--port", server.port, "--debug", target,
                          cwd=tool.home, stdin=own_file, pass_fds=[own_descriptor])
    assert result == Result(0, result.output, errors="No such file or directory\n")

    server.requested.wait()
    [copy] = children()
    process = pathlib.Path(f"/proc/{copy}")
    assert (process / "cmdline").read_text().split("\0")[:-1] == [
        str(PROGRAM), "--host=localhost", f"--port={server.port}", target,
        f"--ini-dir={tool.home}", "--blocking"]
    for descriptor in 0, own_descriptor:
        assert os.readlink(process / f"fd/{descriptor}") == own_file.name
    for descriptor in 1, 2, 3:
        assert os.readlink(process / f"fd/{descriptor}") == "/dev/null"
    assert os.getpgid(copy) == os.getpgid(0)

    server.may_answer.set()
    assert exit_status_of_copy() == 0


def start_printing(tool, **options):
    """A run that starts its copy as soon as somebody reads the rest of what it prints."""
    text = "4" * 100_000  # a pipe holds at most 65,536 bytes
    tool.cache.write_text(f"[{ENTRY}]\ninfo={text}\ntimestamp=5\n")
    for path in tool.cache, tool.home:
        path.chmod(0o777)  # the run may be another user's
    run = tool.start("--host=localhost", "--port", UNUSED_PORT, PAGE, **options)
    assert os.read(run.stdout.fileno(), 1) == b"4"
    return run


def test_an_answer_is_printed_although_no_process_is_left(tool):
    # Root has no limit, so nobody stands in, who may not be allowed to see PROGRAM.
    result = result_of(start_printing(
        tool, program=shutil.copy(PROGRAM, tool.home), user=os.geteuid() or "nobody",
        preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_NPROC, (0, 0))))
    assert result == Result(1, "4" * 99_999 + "\n", "Unable to start child process (first fork).\n")


def test_a_copy_that_cannot_be_silenced_ends(tool):
    run = start_printing(tool)
    resource.prlimit(run.pid, resource.RLIMIT_NOFILE, (3, 3))  # none but the standard descriptors
    assert result_of(run).errors == "Unble to open /dev/null.\n"
    assert run.returncode == 0
    assert exit_status_of_copy() == 1


def test_a_run_that_answers_does_not_load_openssl(tool):
    maps = pathlib.Path(f"/proc/{start_printing(tool).pid}/maps").read_text()
    assert "libssl" not in maps
    assert "libcrypto" not in maps


def test_without_its_module_it_answers_and_fetches_nothing(tool, serve):
    program = shutil.copy(PROGRAM, tool.home)
    tool.cache.write_text(f"[{ENTRY}]\ninfo=old\ntimestamp=5\n")
    port = serve().port
    assert tool.run_page(program=program, port=port) == Result(0, "old\n", errors="")
    assert exit_status_of_copy() == 0
    result = tool.run_page("--blocking", "--debug", program=program, port=port)
    assert result.status == 0
    assert "/get-qmb-ver/fetch.so" in result.errors
    assert result.errors.count("\n") == 1
