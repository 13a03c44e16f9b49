#pragma once

#include "options_map.hpp"

#include <string>

// The options by argc and argv (as main got them, bytes unconverted). home_directory is the default
// of "ini-dir". A bad command line (an unknown option, a missing or unexpected value, a second
// page) raises a boost::program_options::error with Boost's own message.
options_map parse_command_line(int argc, char* argv[], std::string const& home_directory);

// The usage line and the documented options, one per line, as the help shows them.
std::string options_help();
