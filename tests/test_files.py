"""What lies beside the program: a completion for each shell and the manual."""
import re
import shutil
import subprocess

from pytest import mark, param, skip

from program import PROGRAM, TESTS

OPTIONS = {"--help", "--host", "--port", "--blocking", "--target", "--ini-dir", "--debug"}


@mark.parametrize("shell, pattern", [
    param("bash", "bash-completion/completions/get-qmb-ver", id="bash"),
    param("zsh", "zsh/*/_get-qmb-ver", id="zsh"),  # its folder is another one in Debian's package
    param("fish", "fish/vendor_completions.d/get-qmb-ver.fish", id="fish"),
    param("sh", "man/man1/get-qmb-ver.1*", id="the manual"),
])
def test_all_options_are_offered_and_nothing_else(user, shell, pattern):
    [file] = (PROGRAM.parent.parent / "share").glob(pattern)
    if not shutil.which(shell):
        skip(f"needs {shell}")
    offered = subprocess.run([shell, TESTS / f"offered.{shell}", file], env=user.environment,
                             stdout=subprocess.PIPE, encoding="utf-8").stdout
    assert set(re.findall("--[a-z-]+", offered)) == OPTIONS
