#include "fetch/fetch_module.hpp"

#include <boost/dll/library_info.hpp>
#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/format.hpp>

#include <fstream>
#include <stdexcept>

namespace {

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

} // namespace

boost::dll::shared_library open_fetch_module()
{
  // Not every system resolves the link through which the program was called.
  auto const program = weakly_canonical(boost::dll::program_location());
  auto const file = (program.parent_path() / FETCH_MODULE).lexically_normal();
  if (is_cut_short(file))
    throw std::runtime_error{str(boost::format{"%1%: the file is cut short"} % file.native())};
  return boost::dll::shared_library{file};
}
