from harness import ProgramTest


class CommandLine(ProgramTest):
    def test_a_bad_command_line_is_told_in_one_line(self):
        for arguments, errors in [
                (["--ini-dir", ""], r"Please provide page target\."),
                (["--ini-dir", "", "p"], r"Unable to establish path for \*\.ini file\."),
                (["--ini-dir=", "p"], r"Exception: the argument for option '--ini-dir' .+"),
                (["--blocking=1"], "Exception: option '--blocking' does not take any arguments"),
                (["--nonsense", "p"], "Exception: unrecognised option '--nonsense'"),
                (["a", "b"], "Exception: too many positional options .+")]:
            with self.subTest(arguments=arguments):
                result = self.run_program(*arguments)
                self.assertEqual(result[:2], (1, ""))
                self.assertRegex(result[2], rf"\A{errors}\n\Z")

    def test_help_needs_nothing_else(self):
        status, output, errors = self.run_program("--help", "--blocking", "p", env={})
        self.assertEqual((status, errors), (0, ""))
        self.assertRegex(
            output,
            r"\AQMB Version Getter 1\.0\.0-7.* \(\d{4}-[A-Z][a-z]{2}-\d\d \d\d:\d\d:\d\d\)\.\n"
            r"get-qmb-ver <options> <page target>\noptions:\n  --help +produce help message\n"
            r"  --host arg \(=\S+\) +host URL\n  --port arg \(=443\) +port number\n"
            r"  --blocking +block until server response\n\n\Z")

    def test_the_settings_directory_comes_from_option_or_environment(self):
        for environment, arguments, directory in [
                ({"HOME": "/h"}, ["--ini-dir", "x y"], "x y/"),
                ({"HOME": "", "USERPROFILE": "/u"}, [], None),
                ({"USERPROFILE": "/u/", "HOMEDRIVE": "C:", "HOMEPATH": "/me"}, [], "/u/"),
                ({"USERPROFILE": "", "HOMEDRIVE": "C:", "HOMEPATH": "/me"}, [], None),
                ({"HOMEDRIVE": "C:", "HOMEPATH": r"\Users\me"}, [], r"C:/\Users\me/"),
                ({"HOMEDRIVE": "C:", "HOMEPATH": "/me"}, [], "C:/me/"),
                ({"HOMEDRIVE": "C:"}, [], None),
                ({"HOMEPATH": "/me"}, [], None)]:
            with self.subTest(environment=environment, arguments=arguments):
                # An empty host is refused before anything is sent.
                _, output, errors = self.run_program("--host", "", "--debug", "--blocking", "a",
                                                     *arguments, env=environment)
                if directory:
                    self.assertIn(f"ini file: {directory}.qvd_qmb_properties.ini\n", output)
                else:
                    self.assertEqual(errors, "Unable to establish path for *.ini file.\n")
