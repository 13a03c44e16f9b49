#include "cli/entry_name.hpp"

#include <boost/format.hpp>

#include <cstdint>

namespace {

// Written out here because the names on disk must not depend on a library's choice of hash.
std::uint64_t hash(std::string const& key)
{
  constexpr std::uint64_t multiplier = 0xC6A4A7935BD1E995;
  constexpr std::uint64_t increment = 0xE6546B64;
  std::uint64_t h = 0;
  for (char const byte : key) {
    // Bytes from 0x80 up count as negative numbers, even where char is unsigned.
    auto k = static_cast<std::uint64_t>(std::int64_t{static_cast<std::int8_t>(byte)});
    k *= multiplier;
    k ^= k >> 47;
    k *= multiplier;
    h ^= k;
    h *= multiplier;
    h += increment;
  }
  return h;
}

} // namespace

std::string entry_name(std::string const& host, std::string const& page)
{
  auto const key = str(boost::format{"%1%/%2%"} % host % page);
  return str(boost::format{"RevisionInfo-%1$X"} % hash(key));
}
