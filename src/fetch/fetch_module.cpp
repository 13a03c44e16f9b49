#include "fetch/fetch_module.hpp"

#include <boost/dll/library_info.hpp>
#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/filesystem/operations.hpp>
#include <boost/format.hpp>

#include <fstream>
#include <stdexcept>

namespace {

// The loader of Linux believes what the head of a file says about the rest and dies on a file whose
// rest a full disk or a power cut left missing or blank. So the list of sections is read first,
// which stands at the end of an ELF file.
bool is_cut_short(boost::filesystem::path const& file)
{
  try {
    return boost::dll::library_info{file}.sections().empty();
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
