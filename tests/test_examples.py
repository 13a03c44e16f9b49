"""The examples beside the program, each in its shell, without program and answer and with both."""
import subprocess

from pytest import mark, param

from program import PROGRAM, available

EXAMPLES = PROGRAM.parent.parent / "share/doc/get-qmb-ver/examples"
ENTRY = "RevisionInfo-F52DE1D45C6EB51C"  # of the host and the page that the examples ask for
STORED = "4.7\x1b[1m\x9b$(echo no)`echo no`%n\\u\\033é"  # \x1b and \x9b command a terminal
SHOWN = "4.7[1m$(echo no)`echo no`%n\\u\\033é"


@mark.parametrize("shell, commands, before, own", [
    param("bash", "PS1='$?> '; . ./prompt.bash; . ./prompt.bash; (exit 3); echo \"${PS1@P}\"",
          "[{}] ", "3> \n", id="prompt.bash: once, status kept"),
    param("zsh", "LC_ALL=C.UTF-8 PS1='%?> '; repeat 2 { . ./prompt.zsh; $precmd_functions };"
          "(exit 3); print -P $PS1", "[{}] ", "3> \n", id="prompt.zsh: once, status kept"),
    param("fish", "function fish_prompt; echo $status'> '; end; . ./prompt.fish; . ./prompt.fish;"
          "sh -c 'exit 3'; fish_prompt", "[{}] ", "3> \n", id="prompt.fish: once, status kept"),
    param("sh", "sh -eu news.sh; sh -eu news.sh", "Latest QMB release: {}\n", "", id="news, once"),
    param("sh", "./60-qmb-motd", "Latest QMB release: {}\n", "", id="message of the day"),
    param("sh", "sh -eu status-bar.sh", "QMB {}\n", "", id="status bar"),
])
def test_an_example_shows_a_clean_literal_answer_or_nothing(user, shell, commands, before, own):
    for stored, path, expected in [("", user.environment["PATH"].partition(":")[2], own),
                                   (STORED, user.environment["PATH"], before.format(SHOWN) + own)]:
        user.cache.write_text(f"[{ENTRY}]\ninfo={stored}\ntimestamp=9000000000\n")
        run = subprocess.run([*available(shell, "-c"), commands], cwd=EXAMPLES, encoding="utf-8",
                             env=user.environment | {"LC_ALL": "C", "PATH": path},
                             capture_output=True)
        assert (run.returncode, run.stdout, run.stderr) == (0, expected, "")
