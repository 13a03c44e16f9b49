#pragma once

#include "options_map.hpp"

#include <boost/filesystem/path.hpp>

#include <string>

// The home directory by the environment: HOME, else USERPROFILE, else HOMEDRIVE joined with
// HOMEPATH when both are set, else the empty text. A variable that is set counts even when it is
// empty. The bytes are those of environ(7), unchecked. Only std::bad_alloc escapes.
std::string home_directory();

// Whether the options name a settings directory. An empty text names none; any other text is taken
// as it stands, existing or not. An "ini-dir" that is no std::string raises boost::bad_any_cast.
bool names_settings_directory(options_map const& options);

// The path of the cache file within the settings directory. Nothing is looked up on disk. Only
// std::bad_alloc escapes.
boost::filesystem::path cache_file_path(std::string const& settings_directory);
