#include "cli/banner.hpp"
#include "cli/command_line.hpp"
#include "cli/run_flow.hpp"
#include "cli/settings_directory.hpp"

#include <boost/program_options/variables_map.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

int main(int argc, char* argv[])
{
  // Standard descriptors that are closed are opened on /dev/null. Else the cache file would get the
  // lowest free number, which would be that of standard error, and messages would go into it.
  for (int const descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(descriptor, F_GETFD) < 0 && open("/dev/null", O_RDWR) < 0)
      return EXIT_FAILURE;
  options_map options;
  try {
    options = parse_command_line(argc, argv, home_directory());
    if (options.count("help")) {
      std::cout << banner(cvt_DATE_TIME(__DATE__, __TIME__)) << std::endl;
      std::cout << options_help() << std::endl;
      return EXIT_SUCCESS;
    }
    if (!options.count("target")) {
      std::cerr << "Please provide page target." << std::endl;
      return EXIT_FAILURE;
    }
    if (options["ini-dir"].as<std::string>().empty()) {
      std::cerr << "Unable to establish path for *.ini file." << std::endl;
      return EXIT_FAILURE;
    }
  } catch (std::exception const& error) {
    std::cerr << "Exception: " << error.what() << std::endl;
    return EXIT_FAILURE;
  }
  // Outside the handler: "Exception: " is about the command line and the help. What escapes run is
  // no fault of the caller's and ends the process by a signal.
  return run(options);
}
