#include "cache/cache_access.hpp"

#include "report.hpp"

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/format.hpp>
#include <boost/interprocess/sync/file_lock.hpp>
#include <boost/interprocess/sync/scoped_lock.hpp>
#include <boost/property_tree/ini_parser.hpp>
#include <boost/property_tree/ptree.hpp>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <exception>
#include <fstream>
#include <ios>
#include <system_error>

// The lock is a POSIX record lock: it lapses as soon as this process closes any descriptor of the
// file. So a read is locked until its stream closes, and a store writes without the lock: a reader
// may then see an empty or half-written file, and an entry that another process stores meanwhile is
// lost, see "Kept on purpose" in architecture.md. Keep the order in which the streams below are
// opened and closed.

namespace {

using boost::interprocess::file_lock;
using boost::property_tree::ptree;
using scoped_file_lock = boost::interprocess::scoped_lock<file_lock>;

constexpr long lock_wait_microseconds = 250'000;
constexpr char const* missing_lock = "Unable to obtain file lock.";
constexpr char const* info_pattern = "%1%.info";
constexpr char const* timestamp_pattern = "%1%.timestamp";

boost::posix_time::ptime lock_deadline()
{
  return boost::posix_time::microsec_clock::universal_time()
         + boost::posix_time::microseconds{lock_wait_microseconds};
}

ptree::path_type path_of(char const* pattern, std::string const& entry_name)
{
  return {str(boost::format{pattern} % entry_name), '.'};
}

// Raises the system's reason, still in errno, when opening, writing or closing the stream failed.
void require_intact(std::ios const& stream)
{
  if (!stream)
    throw std::system_error{errno, std::generic_category()};
}

} // namespace

bool get_last_known(boost::filesystem::path cache_file, std::string entry_name,
                    std::string& release_text, std::int64_t& timestamp, bool debug)
{
  auto const& file_name = cache_file.native();
  try {
    file_lock file{file_name.c_str()};
    scoped_file_lock const lock{file, lock_deadline()};
    if (!lock.owns()) {
      report(missing_lock, debug);
      return false;
    }
    ptree content;
    std::ifstream in{file_name};
    require_intact(in);
    read_ini(in, content);
    release_text = content.get(path_of(info_pattern, entry_name), std::string{});
    timestamp = content.get(path_of(timestamp_pattern, entry_name), std::int64_t{0});
    return true;
  } catch (boost::property_tree::ptree_bad_path const&) {
    return false; // cannot occur, as both keys have a default, and is no reason to empty the file
  } catch (boost::property_tree::ptree_error const& error) {
    // With an invalid file every read and store would fail: empty it for the next store to fill.
    // The lock is gone by now: an entry stored since the read is lost, too.
    std::ofstream const emptied{file_name};
    if (!emptied)
      report(std::strerror(errno), debug);
    report(error.what(), debug);
    return false;
  } catch (std::exception const& error) {
    report(error.what(), debug);
    return false;
  }
}

void update_last_known(boost::filesystem::path cache_file, std::string entry_name,
                       std::string const& release_text, bool debug)
{
  auto const& file_name = cache_file.native();
  try {
    // The lock needs an existing file. If none can be made, taking the lock fails.
    std::ofstream{file_name, std::ios::app}.close();
    file_lock file{file_name.c_str()};
    scoped_file_lock const lock{file, lock_deadline()};
    if (!lock.owns())
      return report(missing_lock, debug);
    ptree content;
    std::ifstream in{file_name};
    require_intact(in);
    read_ini(in, content);
    in.close(); // the lock has lapsed here
    content.put(path_of(info_pattern, entry_name), release_text);
    content.put(path_of(timestamp_pattern, entry_name), std::time(nullptr));
    std::ofstream out{file_name};
    write_ini(out, content);
    out.close();
    require_intact(out);
  } catch (std::exception const& error) {
    // An invalid file is not emptied here: until a read recovers from it, every store fails.
    report(error.what(), debug);
  }
}
