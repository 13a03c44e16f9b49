#pragma once

#include <boost/filesystem/path.hpp>

#include <string>

// The home directory by the environment: HOME, else USERPROFILE, else HOMEDRIVE joined with
// HOMEPATH when both are set, else the empty text. A variable that is set counts even when it is
// empty. The bytes are those of environ(7), unchecked. Only std::bad_alloc escapes.
std::string home_directory();

// The path of the cache file in the settings directory, which the options call "ini-dir". Nothing
// is looked up on disk. Only std::bad_alloc escapes.
boost::filesystem::path cache_file_path(std::string const& settings_directory);
