#pragma once

#include "options_map.hpp"

// The run after the command line is accepted. With "blocking" it fetches, prints and stores a
// release text. Without, it prints the stored one, if any, and starts a background copy unless it
// has read a fresh timestamp. Returns the exit status: 1 when a background copy was needed and
// could not be started, else 0. The exceptions of spawn_blocking escape.
int run(options_map const& options);
