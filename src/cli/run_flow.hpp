#pragma once

#include "options_map.hpp"

#include <cstdint>
#include <ctime>

// Whether a release text stored at timestamp is more than a day old at the time "now", both in
// seconds since the epoch. Exactly a day is fresh, and so is a timestamp in the future.
bool is_stale(std::time_t now, std::int64_t timestamp);

// The run after the command line is accepted: with "blocking" it fetches, prints and stores
// a release text, else it prints the stored one and starts a background copy when that is stale or
// missing. Returns the exit status: 1 when a background copy was needed and could not be started,
// else 0. The exceptions of spawn_blocking escape.
int run(options_map const& options);
