from fnmatch import fnmatchcase

from pytest import mark, param

from program import TESTS


@mark.parametrize("arguments, message", [
    param(["--ini-dir", ""], "Please provide page target.", id="no page, told before --ini-dir"),
    param(["--ini-dir", "", "p"], "Unable to establish path for *.ini file.", id="--ini-dir ''"),
    param(["--blokcing", "p"], "Exception: unrecognised option '--blokcing'", id="a typing error"),
    param(["a", "b"], "Exception: too many positional options ", id="two pages"),
])
def test_a_wrong_command_line_is_told_in_one_line(user, arguments, message):
    result = user.run(*arguments)
    assert (result.returncode, result.stdout, result.stderr.count("\n")) == (1, "", 1)
    assert result.stderr.startswith(message)


def test_an_abbreviated_help_shows_version_and_four_options_and_needs_no_home(user):
    del user.environment["HOME"]
    result = user.run("--he")  # abbreviated; --debug, --ini-dir and --target are not shown
    assert (result.returncode, result.stderr) == (0, "")
    assert fnmatchcase(result.stdout, (TESTS / "help.txt").read_text())


@mark.parametrize("variables, told", [
    param("HOME= USERPROFILE=/u", "Unable to establish", id="an empty HOME hides USERPROFILE"),
    param("HOMEDRIVE=C: HOMEPATH=/me", ": C:/me/.qvd_", id="the drive and the path joined"),
])
def test_the_settings_directory_comes_from_these_variables(user, variables, told):
    del user.environment["HOME"]
    user.environment |= dict(variable.split("=") for variable in variables.split())
    result = user.run("--host", "", "--debug", "--blocking", "p")  # sends nothing, starts no copy
    assert told in result.stdout + result.stderr
