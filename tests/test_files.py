"""What lies beside the program. offered.SHELL prints the options that a file offers there."""
import re
import subprocess

from pytest import mark, param

from program import PROGRAM, TESTS, available

ZSH_FOLDER = "vendor-completions" if "/usr/bin/" in str(PROGRAM) else "site-functions"  # Debian's
OPTIONS = {"--help", "--host", "--port", "--blocking", "--target", "--ini-dir", "--debug"}


@mark.parametrize("shell, pattern", [
    param("bash", "bash-completion/completions/get-qmb-ver", id="bash: no file for --ini-dir"),
    param("zsh", f"zsh/{ZSH_FOLDER}/_get-qmb-ver", id="zsh: values behind an equal sign, too"),
    param("fish", "fish/vendor_completions.d/get-qmb-ver.fish", id="fish: folders for --ini-dir"),
    param("sh", "man/man1/get-qmb-ver.1*", id="the manual, which names the cache file"),
])
def test_all_seven_options_are_offered_and_nothing_else(user, shell, pattern):
    [file] = (PROGRAM.parent.parent / "share").glob(pattern)
    available(shell, "-c")
    offered = subprocess.run([shell, TESTS / f"offered.{shell}", file], env=user.environment,
                             stdout=subprocess.PIPE, encoding="utf-8").stdout
    assert set(re.findall("--[a-z-]+", offered)) == OPTIONS
