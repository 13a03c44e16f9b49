#include "fetch/release_text.hpp"

#include "report.hpp"

#include <boost/algorithm/string/erase.hpp>
#include <boost/format.hpp>

namespace {

constexpr std::string_view opening_marker = "<!--ReleaseInfo";
constexpr std::string_view closing_marker = "-->";

void report_missing(std::string_view marker, bool debug)
{
  report(str(boost::format{"'%1%' delimiter not found."} % marker), debug);
}

} // namespace

std::string extract_release_text(std::string_view body, bool debug)
{
  auto const opening = body.find(opening_marker);
  if (opening == body.npos) {
    report_missing(opening_marker, debug);
    return {};
  }
  auto const begin = opening + opening_marker.size();
  auto const end = body.find(closing_marker, begin);
  if (end == body.npos) {
    report_missing(closing_marker, debug);
    return {};
  }
  std::string release_text{body.substr(begin, end - begin)};
  boost::erase_all(release_text, "\n");
  boost::erase_all(release_text, "\r");
  return release_text;
}
