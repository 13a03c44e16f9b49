#pragma once

#include <string>

// The name of a page's entry in the cache file: "RevisionInfo-" and the upper-case hexadecimal
// digits, without leading zeros, of a 64-bit hash of host, "/" and page, bytes as given. Every run
// finds its entry by this name, so the name for given bytes never changes.
std::string entry_name(std::string const& host, std::string const& page);
