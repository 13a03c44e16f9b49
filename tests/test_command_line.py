import re

from pytest import mark, param

from program import PROGRAM, linux_only


@mark.parametrize("arguments, message", [
    param(["--ini-dir", ""], "Please provide page target.", id="no page (before other faults)"),
    param(["--ini-dir", "", "p"], "Unable to establish path for *.ini file.", id="--ini-dir ''"),
    param(["--ini-dir=", "p"], "Exception: the argument for option '--ini-dir' ", id="--ini-dir="),
    param(["a", "b"], "Exception: too many positional options ", id="two pages"),
])
def test_a_wrong_command_line_is_told_in_one_line(user, arguments, message):
    result = user.run(*arguments)
    assert (result.status, result.output) == (1, "")
    assert result.errors.startswith(message)
    assert result.errors.count("\n") == 1


@linux_only  # macOS runs no program whose file was changed
def test_the_help_needs_no_home_and_takes_the_build_time_from_local_to_utc(user):
    # As if compiled at another time: a copy of the program with another __DATE__ and __TIME__.
    content = re.sub(rb"[A-Z][a-z]{2} [ \d]\d \d{4}\0", b"Jul  5 2022\0", PROGRAM.read_bytes())
    user.program.unlink()
    user.program.write_bytes(re.sub(rb"\d\d:\d\d:\d\d\0", b"09:29:06\0", content))
    user.program.chmod(0o755)
    del user.environment["HOME"]
    user.environment["TZ"] = "CET-1CEST,M3.5.0,M10.5.0"  # two hours in summer
    result = user.run("--he")  # abbreviated; --debug, --ini-dir and --target are not shown
    assert (result.status, result.errors) == (0, "")
    assert re.fullmatch(r"""QMB Version Getter .* \(2022-Jul-05 07:29:06\)\.
get-qmb-ver <options> <page target>
options:
  --help +produce help message
  --host arg \(=\S+\) +host URL
  --port arg \(=443\) +port number
  --blocking +block until server response

""", result.output)


@mark.parametrize("variables, told", [
    param("HOME= USERPROFILE=/u", "Unable to establish", id="an empty HOME hides USERPROFILE"),
    param("USERPROFILE=/u/ HOMEDRIVE=C: HOMEPATH=/me", ": /u/.qvd_", id="USERPROFILE, then C:"),
    param(r"HOMEDRIVE=C: HOMEPATH=\Users\me", r": C:/\Users\me/.qvd_", id="a slash after C:"),
    param("HOMEDRIVE=C: HOMEPATH=/me", ": C:/me/.qvd_", id="no second slash after C:"),
])
def test_the_settings_directory_comes_from_these_variables(user, variables, told):
    del user.environment["HOME"]
    user.environment |= dict(variable.split("=") for variable in variables.split())
    result = user.run("--host", "", "--debug", "--blocking", "p")  # sends nothing, starts no copy
    assert told in result.output + result.errors
