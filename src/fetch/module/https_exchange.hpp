#pragma once

#include <cstddef>

// The module holds everything that needs OpenSSL, and the program opens it at run time. Program and
// module may each have a C++ runtime of their own, so nothing of C++ passes between them: no
// object, no exception, and no memory that the other side has to free.
extern "C" {

// Takes the body of the page: size bytes, valid during the call. user_data, of which the module
// knows nothing, and debug are those of fetch_over_https. Returns false on failure; with debug, a
// line on standard error tells why.
using body_handler = bool(void* user_data, char const* body, std::size_t size, bool debug) noexcept;

using fetch_function = bool(char const* host, char const* port, char const* request_target,
                            body_handler* handle_body, void* user_data, bool debug) noexcept;

// The module's one exported function. Fetches request_target, sent as it is, from host and port (a
// number or a service name) with one HTTP/1.0 GET (RFC 1945) over TLS 1.2 (RFC 5246), without any
// time-out, and calls handle_body once when the response is complete, whatever its status code.
// Returns true when handle_body did and the exchange ended cleanly. Returns false on any failure;
// with debug, a line on standard error tells which. Every std::exception is caught.
[[gnu::visibility("default")]] fetch_function fetch_over_https; // whatever -fvisibility says
}
