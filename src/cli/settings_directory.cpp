#include "cli/settings_directory.hpp"

#include <boost/program_options/variables_map.hpp>

#include <cstdlib>

std::string home_directory()
{
  if (char const* const home = std::getenv("HOME"))
    return home;
  if (char const* const profile = std::getenv("USERPROFILE"))
    return profile;
  char const* const drive = std::getenv("HOMEDRIVE");
  char const* const path = std::getenv("HOMEPATH");
  // Version 3 of the library joins "C:" and "/me" to "C:/me"; version 4 would give "/me" alone.
  if (drive && path)
    return (boost::filesystem::path{drive} / path).string();
  return {};
}

bool names_settings_directory(options_map const& options)
{
  return !options["ini-dir"].as<std::string>().empty();
}

boost::filesystem::path cache_file_path(std::string const& settings_directory)
{
  return boost::filesystem::path{settings_directory} / ".qvd_qmb_properties.ini";
}
