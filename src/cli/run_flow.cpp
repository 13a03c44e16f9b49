#include "cli/run_flow.hpp"

#include "cache/cache_access.hpp"
#include "cli/entry_name.hpp"
#include "cli/settings_directory.hpp"
#include "fetch/server_access.hpp"
#include "spawn/background_copy.hpp"

#include <boost/program_options/variables_map.hpp>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <string>

namespace {

constexpr long double staleness_limit_seconds = 86400.0L;

int run_blocking(options_map const& options, boost::filesystem::path const& cache_file,
                 std::string const& entry, bool debug)
{
  std::string release_text;
  if (get_from_server(options, release_text, debug) && !release_text.empty()) {
    std::cout << release_text << std::endl;
    update_last_known(cache_file, entry, release_text, debug);
  }
  // A failed fetch is no error of the run: a later run tries again.
  return EXIT_SUCCESS;
}

// Exactly a day old is fresh, and so is a time in the future.
bool is_stale(std::time_t now, std::int64_t timestamp)
{
  // In floating point no timestamp overflows, whatever the cache file holds.
  return static_cast<long double>(now)
         > static_cast<long double>(timestamp) + staleness_limit_seconds;
}

int run_default(options_map const& options, boost::filesystem::path const& cache_file,
                std::string const& entry, bool debug)
{
  std::string release_text;
  std::int64_t timestamp = 0; // stale, unless an entry is read
  if (get_last_known(cache_file, entry, release_text, timestamp, debug) && !release_text.empty())
    std::cout << release_text << std::endl;
  if (debug) {
    std::cout << "Timestamp: " << timestamp << std::endl;
    std::cout << "Now:       " << std::time(nullptr) << std::endl;
  }
  if (!is_stale(std::time(nullptr), timestamp))
    return EXIT_SUCCESS;
  return spawn_blocking(options) ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace

int run(options_map const& options)
{
  auto const cache_file = cache_file_path(options["ini-dir"].as<std::string>());
  auto const entry =
      entry_name(options["host"].as<std::string>(), options["target"].as<std::string>());
  bool const debug = options["debug"].as<bool>();
  if (debug) {
    std::cout << "ini file: " << cache_file.native() << std::endl;
    std::cout << "ini entry: " << entry << std::endl;
  }
  return options["blocking"].as<bool>() ? run_blocking(options, cache_file, entry, debug)
                                        : run_default(options, cache_file, entry, debug);
}
