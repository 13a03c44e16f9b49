#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

// The home directory by the environment: HOME, else USERPROFILE, else HOMEDRIVE joined with
// HOMEPATH when both are set, else the empty text. A variable that is set counts even when it is
// empty. The bytes are those of environ(7), unchecked.
std::string home_directory();

// The path of the cache file in the settings directory. Nothing is looked up on disk.
boost::filesystem::path cache_file_path(std::string const& settings_directory);
