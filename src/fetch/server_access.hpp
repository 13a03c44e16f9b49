#pragma once

#include "options_map.hpp"

#include <string>

// Fetches the page "target" from "host" and "port" over HTTPS, see https_exchange.hpp, and extracts
// its release text. The request target is the page, "?" and a query number from 0 to 1000, which is
// the same in every run. Returns true when the exchange ended cleanly, even if the page has no
// release text, which is then empty. Returns false on any failure; the text is still set if only
// the TLS shutdown failed. Every std::exception is caught; with debug, a line on standard error
// tells what went wrong.
bool get_from_server(options_map const& options, std::string& release_text, bool debug);
