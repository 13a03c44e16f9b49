#pragma once

#include "options_map.hpp"

// The run after the command line is accepted: with "blocking" it fetches, prints and stores
// a release text, else it prints the stored one and starts a background copy when that is stale or
// missing. Returns the exit status: 1 when a background copy was needed and could not be started,
// else 0. The exceptions of spawn_blocking escape.
int run(options_map const& options);
