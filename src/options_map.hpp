#pragma once

namespace boost::program_options {
class variables_map;
}

// The parsed command line, by option name. Always present: "host", "port" and "ini-dir"
// (std::string), "blocking" and "debug" (bool). Present when given: "target" (std::string, the
// page, bytes as given) and "help" (no value).
using options_map = boost::program_options::variables_map;
