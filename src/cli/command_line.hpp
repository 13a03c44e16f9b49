#pragma once

#include "options_map.hpp"

#include <string>

// The options in argc and argv (as main got them, bytes as given). home_directory is the default
// of "ini-dir". A bad command line (an unknown or ambiguous option, one given twice, a missing or
// unexpected value, a second page) raises a boost::program_options::error with Boost's message.
options_map parse_command_line(int argc, char* argv[], std::string const& home_directory);

// The usage line and the options that the help lists.
std::string options_help();
