import re

from pytest import mark, param


@mark.parametrize("arguments, message", [
    param(["--ini-dir", ""], "Please provide page target.", id="no page, told first"),
    param(["--ini-dir", "", "p"], "Unable to establish path for *.ini file.", id="empty --ini-dir"),
    param(["--ini-dir=", "p"], "Exception: the argument for option '--ini-dir' ", id="--ini-dir="),
    param(["--nonsense", "p"], "Exception: unrecognised option '--nonsense'", id="unknown option"),
    param(["a", "b"], "Exception: too many positional options ", id="two pages"),
])
def test_a_wrong_command_line_is_told_in_one_line(tool, arguments, message):
    result = tool.run(*arguments)
    assert (result.status, result.output) == (1, "")
    assert result.errors.startswith(message)
    assert result.errors.count("\n") == 1


def test_help_needs_nothing_else(tool):
    result = tool.run("--help", env={})
    assert (result.status, result.errors) == (0, "")
    assert re.fullmatch(r"""QMB Version Getter .* \(\d{4}-[A-Z][a-z]{2}-\d\d \d\d:\d\d:\d\d\)\.
get-qmb-ver <options> <page target>
options:
  --help +produce help message
  --host arg \(=\S+\) +host URL
  --port arg \(=443\) +port number
  --blocking +block until server response

""", result.output)


def test_an_option_may_be_abbreviated_and_a_failure_names_no_source_file(tool):
    result = tool.run_page("--block", "--debug")
    assert re.fullmatch(r"connect: Connection refused \[system:\d+\]\n", result.errors)


@mark.parametrize("variables, arguments, directory", [
    param("HOME=/h", ["--ini-dir", "x y"], "x y/", id="the option wins"),
    param("HOME= USERPROFILE=/u", [], None, id="an empty HOME hides USERPROFILE"),
    param("USERPROFILE=/u/ HOMEDRIVE=C: HOMEPATH=/me", [], "/u/", id="USERPROFILE comes second"),
    param(r"HOMEDRIVE=C: HOMEPATH=\Users\me", [], r"C:/\Users\me/", id="a slash after C:"),
    param("HOMEDRIVE=C: HOMEPATH=/me", [], "C:/me/", id="no second slash after C:"),
    param("USERPROFILE= HOMEDRIVE=C: HOMEPATH=/m", [], None, id="an empty USERPROFILE hides both"),
    param("HOMEPATH=/me", [], None, id="HOMEPATH alone is no directory"),
    param("HOMEDRIVE=C:", [], None, id="HOMEDRIVE alone is no directory"),
])
def test_the_settings_directory(tool, variables, arguments, directory):
    environment = dict(variable.split("=") for variable in variables.split())
    # An empty host is refused before anything is sent, and --blocking starts no copy.
    result = tool.run("--host", "", "--debug", "--blocking", "p", *arguments, env=environment)
    if directory:
        assert f"ini file: {directory}.qvd_qmb_properties.ini\n" in result.output
    else:
        assert result.errors == "Unable to establish path for *.ini file.\n"
