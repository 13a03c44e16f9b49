#pragma once

#include <string>

// The name under which the cache file keeps the answer for a page: "RevisionInfo-" and the
// upper-case hexadecimal digits of a 64-bit hash of host, "/" and target, bytes as given on the
// command line. Every run finds its answer by this name, so its value for given bytes never
// changes. Errors of the formatting (std::exception) escape.
std::string entry_name(std::string const& host, std::string const& target);
