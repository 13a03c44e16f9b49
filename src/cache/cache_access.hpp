#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

// The cache file is INI text, one section an entry with the keys "info" (the release text) and
// "timestamp" (seconds since the epoch). Both functions hold an exclusive record lock on the file
// itself, see fcntl(2), and give up after waiting 250 ms for it. Every std::exception is caught;
// its message goes to standard error when debug is set.

// Reads one entry; what the entry lacks reads as "" and 0. Returns false, leaving both outputs
// alone, when the file is missing, locked or unreadable. A file that is not valid INI is emptied.
bool get_last_known(boost::filesystem::path cache_file, std::string entry_name,
                    std::string& release_text, long& timestamp, bool debug);

// Stores one entry with the current time and keeps all others; creates the file if need be. When
// this fails the caller is not told. A file that is not valid INI stays as it is.
void update_last_known(boost::filesystem::path cache_file, std::string entry_name,
                       std::string const& release_text, bool debug);
