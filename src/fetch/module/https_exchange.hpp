#pragma once

#include <cstddef>

// The one function of the module, opened at run time, that holds all that needs OpenSSL. Program
// and module may each have a C++ runtime of their own, so nothing of C++ passes between them.

// Fetches target (the request target, sent as it is) from host and port (a number or a service
// name) with one HTTP/1.0 GET (RFC 1945) over TLS 1.2 (RFC 5246), without any time-out, and
// extracts the release text of the page; the status code is not looked at. The text's bytes go to
// *release_text, allocated with malloc(3) for the caller to free, and their number to *size; both
// stay as they are if the fetch fails before that. Returns true when the exchange ended cleanly;
// the text is then empty if the page lacks a marker. Returns false on any failure; with debug, a
// line on standard error tells which. Every std::exception is caught.
extern "C" bool fetch_over_https(char const* host, char const* port, char const* target,
                                 char** release_text, std::size_t* size, bool debug) noexcept;
