#include "fetch/server_access.hpp"

#include "fetch/module_loader.hpp"
#include "fetch/release_text.hpp"
#include "report.hpp"

#include <boost/format.hpp>
#include <boost/program_options/variables_map.hpp>
#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_int_distribution.hpp>

#include <cstddef>
#include <exception>

namespace {

constexpr int largest_query_number = 1000;

// Never seeded: see "Kept on purpose" in architecture.md.
boost::random::mt19937 rangen;

std::string request_target_of(std::string const& page)
{
  boost::random::uniform_int_distribution<> query_number{0, largest_query_number};
  return str(boost::format{"%1%?%2%"} % page % query_number(rangen));
}

// Called by the module, through which no exception may pass.
bool keep_release_text(void* release_text, char const* body, std::size_t size, bool debug) noexcept
{
  try {
    *static_cast<std::string*>(release_text) = extract_release_text({body, size}, debug);
    return true;
  } catch (std::exception const& error) {
    report(error.what(), debug);
    return false;
  }
}

} // namespace

bool get_from_server(options_map const& options, std::string& release_text, bool debug)
{
  release_text = "";
  try {
    auto const& host = options["host"].as<std::string>();
    auto const& port = options["port"].as<std::string>();
    auto const request_target = request_target_of(options["target"].as<std::string>());

    // Opened only here: OpenSSL, which comes with it, would slow down every start.
    return open_module()(host.c_str(), port.c_str(), request_target.c_str(), keep_release_text,
                         &release_text, debug);
  } catch (std::exception const& error) {
    report(error.what(), debug);
    return false;
  }
}
