#include "fetch/page_fetch.hpp"

#include "fetch/fetch_module.hpp"
#include "fetch/module/https_exchange.hpp"

#include <boost/format.hpp>
#include <boost/program_options/variables_map.hpp>
#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_int_distribution.hpp>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace {

using allocated_text = std::unique_ptr<char, decltype([](char* text) { std::free(text); })>;

constexpr int largest_query_number = 1000;

// Never seeded: every run draws the same numbers, so a cache on the way may answer for the server.
boost::random::mt19937 rangen;

std::string request_target(std::string const& page_target)
{
  boost::random::uniform_int_distribution<> query_number{0, largest_query_number};
  return str(boost::format{"%1%?%2%"} % page_target % query_number(rangen));
}

} // namespace

bool get_from_server(options_map& options, std::string& release_text, bool debug)
{
  release_text = "";
  try {
    auto const& host = options["host"].as<std::string>();
    auto const& port = options["port"].as<std::string>();
    auto const target = request_target(options["target"].as<std::string>());

    // What needs OpenSSL costs a start more than all the rest, so it is opened only here.
    auto const module = open_fetch_module();
    auto const& fetch = module.get<decltype(fetch_over_https)>("fetch_over_https");
    char* text = nullptr;
    std::size_t size = 0;
    bool const fetched = fetch(host.c_str(), port.c_str(), target.c_str(), &text, &size, debug);
    // A failure may come with a text, too, when only the end of the exchange was not clean.
    allocated_text const owner{text};
    release_text.assign(text, size);
    return fetched;
  } catch (std::exception const& error) {
    if (debug)
      std::cerr << error.what() << std::endl;
    return false;
  }
}
