#pragma once

#include "options_map.hpp"

#include <string>

// Fetches the page "target" from "host" and "port" with one HTTP/1.0 GET (RFC 1945) over TLS 1.2
// (RFC 5246), without any time-out, and extracts its release text; the status code is not looked
// at. Returns true when the exchange ended cleanly; the text is then empty if the page lacks a
// marker. Returns false on any failure; the text is then empty unless only the end of the exchange
// failed. Every std::exception is caught. With debug, a line on standard error tells what went
// wrong.
bool get_from_server(options_map& options, std::string& release_text, bool debug);
