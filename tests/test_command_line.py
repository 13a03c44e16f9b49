import re

from pytest import mark, param

from conftest import Result


@mark.parametrize("arguments, message", [
    param(["--ini-dir", ""], "Please provide page target.", id="no page"),
    param(["--ini-dir", "", "p"], "Unable to establish path for *.ini file.", id="no directory"),
    param(["--ini-dir=", "p"], "Exception: the argument for option '--ini-dir' ", id="no value"),
    param(["--nonsense", "p"], "Exception: unrecognised option '--nonsense'", id="unknown option"),
    param(["a", "b"], "Exception: too many positional options ", id="two pages"),
])
def test_a_wrong_command_line_is_told_in_one_line(tool, arguments, message):
    result = tool.run(*arguments)
    assert result == Result(status=1, output="", errors=result.errors)
    assert result.errors.startswith(message)
    assert result.errors.count("\n") == 1


def test_help_needs_nothing_else(tool):
    result = tool.run("--help", env={})
    assert result == Result(status=0, output=result.output, errors="")
    assert re.fullmatch(r"""QMB Version Getter .* \(\d{4}-[A-Z][a-z]{2}-\d\d \d\d:\d\d:\d\d\)\.
get-qmb-ver <options> <page target>
options:
  --help +produce help message
  --host arg \(=\S+\) +host URL
  --port arg \(=443\) +port number
  --blocking +block until server response

""", result.output)


def test_an_option_may_be_abbreviated(tool):
    # A failure is told without the names of source files, which are those of the build machine.
    result = tool.run_page("--block", "--debug")
    assert re.fullmatch(r"connect: Connection refused \[system:\d+\]\n", result.errors)


@mark.parametrize("variables, arguments, directory", [
    param("HOME=/h", ["--ini-dir", "x y"], "x y/", id="the option wins"),
    param("HOME= USERPROFILE=/u", [], None, id="HOME wins, even when it is empty"),
    param("USERPROFILE=/u/ HOMEDRIVE=C: HOMEPATH=/me", [], "/u/", id="USERPROFILE comes second"),
    param(r"HOMEDRIVE=C: HOMEPATH=\Users\me", [], r"C:/\Users\me/", id="drive and path are joined"),
    param("HOMEDRIVE=C: HOMEPATH=/me", [], "C:/me/", id="by one slash"),
    param("HOMEDRIVE=C:", [], None, id="a drive alone is none"),
])
def test_the_settings_directory(tool, variables, arguments, directory):
    environment = dict(variable.split("=") for variable in variables.split())
    # An empty host is refused before anything is sent.
    result = tool.run("--host", "", "--debug", "--blocking", "p", *arguments, env=environment)
    if directory:
        assert f"ini file: {directory}.qvd_qmb_properties.ini\n" in result.output
    else:
        assert result.errors == "Unable to establish path for *.ini file.\n"
