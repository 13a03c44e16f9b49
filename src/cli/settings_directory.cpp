#include "cli/settings_directory.hpp"

#include <cstdlib>

std::string home_directory()
{
  if (char const* const home = std::getenv("HOME"))
    return home;
  if (char const* const profile = std::getenv("USERPROFILE"))
    return profile;
  char const* const drive = std::getenv("HOMEDRIVE");
  char const* const path = std::getenv("HOMEPATH");
  // BOOST_FILESYSTEM_VERSION 3 joins "C:" and "/me" to "C:/me"; 4 would give "/me" alone.
  if (drive && path)
    return (boost::filesystem::path{drive} / path).string();
  return {};
}

boost::filesystem::path cache_file_path(std::string const& settings_directory)
{
  return boost::filesystem::path{settings_directory} / ".qvd_qmb_properties.ini";
}
