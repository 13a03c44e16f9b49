#pragma once

#include "options_map.hpp"

// Starts a background copy of this program that refreshes the cache file: fork(2), standard output
// and standard error to /dev/null, execl(3) of the program's own file with the same host, port,
// page and settings directory and "--blocking". Nobody waits for it. Returns true in the caller
// once the copy exists, and false after a message when it could not be made. In the copy it does
// not return, or returns false after a message when its output could not be discarded or the
// program could not be started. A missing option (boost::bad_any_cast) or an unknown path of the
// program (boost::system::system_error) escapes in the copy.
bool spawn_blocking(options_map const& options);
