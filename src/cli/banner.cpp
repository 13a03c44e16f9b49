#include "cli/banner.hpp"

#include "build_settings.hpp"

#include <boost/date_time/posix_time/posix_time.hpp>
#include <boost/format.hpp>

#include <cstdio>
#include <cstring>

std::time_t cvt_DATE_TIME(char const* date, char const* time)
{
  static constexpr char month_names[] = "JanFebMarAprMayJunJulAugSepOctNovDec";
  std::tm when{};
  char month[5];
  int year = 0;
  std::sscanf(date, "%s %d %d", month, &when.tm_mday, &year);
  when.tm_mon = static_cast<int>(std::strstr(month_names, month) - month_names) / 3;
  when.tm_year = year - 1900;
  when.tm_isdst = -1;
  std::sscanf(time, "%2d %*c %2d %*c %2d", &when.tm_hour, &when.tm_min, &when.tm_sec);
  return std::mktime(&when);
}

std::string banner(std::time_t build_time)
{
  // Read as local time, shown as UTC: see "Kept on purpose" in architecture.md.
  auto const built = boost::posix_time::from_time_t(build_time);
  return str(boost::format{"QMB Version Getter %1%%3% (%2%)."} % program_version
             % to_simple_string(built) % maker_notice);
}
