#include "cli/banner.hpp"
#include "cli/command_line.hpp"
#include "cli/run_flow.hpp"
#include "cli/settings_directory.hpp"

#include <boost/program_options/variables_map.hpp>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>

int main(int argc, char* argv[])
{
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
  // Outside the handler on purpose: "Exception: " tells of a wrong command line alone, and an
  // exception that escapes run ends the process by a signal.
  return run(options);
}
