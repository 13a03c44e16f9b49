#pragma once

#include "options_map.hpp"

#include <string>

// Parses argc and argv (as main got them, bytes unconverted) into the options. home_directory is
// the default of "ini-dir". A bad command line (an unknown option, a missing or unexpected
// value, a second page target) raises a boost::program_options::error with Boost's own message.
void parse_command_line(int argc, char* argv[], std::string const& home_directory,
                        options_map& options);

// The usage line and the documented options, one per line, as the help shows them. Only
// std::bad_alloc escapes.
std::string options_help();
