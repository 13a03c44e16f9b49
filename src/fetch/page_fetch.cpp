#include "fetch/page_fetch.hpp"

#include "fetch/module/https_exchange.hpp"

#include <boost/dll/library_info.hpp>
#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/dll/shared_library.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/format.hpp>
#include <boost/program_options/variables_map.hpp>
#include <boost/random/mersenne_twister.hpp>
#include <boost/random/uniform_int_distribution.hpp>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace {

using allocated_text = std::unique_ptr<char, decltype([](char* text) { std::free(text); })>;

constexpr int largest_query_number = 1000;

// Never seeded, and that is intended: every run draws the same numbers.
boost::random::mt19937 rangen;

std::string request_target(std::string const& page_target)
{
  boost::random::uniform_int_distribution<> query_number{0, largest_query_number};
  return str(boost::format{"%1%?%2%"} % page_target % query_number(rangen));
}

// The dynamic loader believes what the head of a file says about the rest and dies on a file that
// was cut short, by a full disk for example. So its end is read first, where the section table is.
bool is_cut_short(boost::filesystem::path const& file)
{
  try {
    boost::dll::library_info{file}.sections();
    return false;
  } catch (std::ios_base::failure const&) {
    return std::ifstream{file.native()}.is_open();
  } catch (std::exception const&) {
    return false; // no library at all: the loader says so, and better
  }
}

// What needs OpenSSL costs a start more than all the rest, so it is opened only to fetch; and only
// in one place, as far from the program as when both were built, wherever that is now.
boost::dll::shared_library open_module()
{
  // Not every system resolves the link through which the program was called.
  auto const program = weakly_canonical(boost::dll::program_location());
  auto const file = (program.parent_path() / FETCH_MODULE).lexically_normal();
  if (is_cut_short(file))
    throw std::runtime_error{str(boost::format{"%1%: the file is cut short"} % file.native())};
  return boost::dll::shared_library{file};
}

} // namespace

bool get_from_server(options_map& options, std::string& release_text, bool debug)
{
  release_text = "";
  try {
    auto const& host = options["host"].as<std::string>();
    auto const& port = options["port"].as<std::string>();
    auto const target = request_target(options["target"].as<std::string>());

    auto const module = open_module();
    auto const& fetch = module.get<decltype(fetch_over_https)>("fetch_over_https");
    char* text = nullptr;
    std::size_t size = 0;
    bool const fetched = fetch(host.c_str(), port.c_str(), target.c_str(), &text, &size, debug);
    allocated_text const owner{text};
    release_text.assign(text, size);
    return fetched;
  } catch (std::exception const& error) {
    if (debug)
      std::cerr << error.what() << std::endl;
    return false;
  }
}
