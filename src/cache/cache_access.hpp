#pragma once

#include <boost/filesystem/path.hpp>

#include <cstdint>
#include <string>

// The cache file is INI text with one section per entry and in it the keys "info" (the release
// text) and "timestamp" (seconds since the epoch). Both functions take an exclusive record lock on
// the file itself, see fcntl(2), and give up after waiting 250 ms for it. Only reading is locked:
// both lose the lock before they write. Every std::exception is caught; with debug, a line on
// standard error tells what failed.

// Reads one entry and returns true; a missing or bad value reads as "" or 0. Returns false and
// leaves both outputs alone when the file is missing or cannot be opened, locked or read, or is not
// valid INI. A file that was opened but cannot be read or is not valid INI is emptied.
bool get_last_known(boost::filesystem::path cache_file, std::string entry_name,
                    std::string& release_text, std::int64_t& timestamp, bool debug);

// Stores one entry with the current time and keeps all others that it has read; creates the file if
// need be. When this fails the caller is not told. A file that cannot be read stays as it is, one
// that cannot be written may be cut short.
void update_last_known(boost::filesystem::path cache_file, std::string entry_name,
                       std::string const& release_text, bool debug);
