#pragma once

#include "options_map.hpp"

#include <ctime>

// Whether an answer stored at timestamp is due for a refresh at now, both in seconds since the
// epoch: older than a day. Exactly a day is fresh, and so is a timestamp in the future.
bool is_stale(std::time_t now, long timestamp);

// The run after the command line is accepted: answers from the cache file and starts a background
// copy when the answer is stale, or with "blocking" fetches, prints and stores now. Returns the
// exit status: 1 when a background copy was needed and could not be started, else 0. Errors of
// spawn_blocking and of the formatting escape.
int run(options_map& options);
