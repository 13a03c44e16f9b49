#pragma once

#include <ctime>
#include <string>

// Reads the compiler's __DATE__ ("Mmm dd yyyy") and __TIME__ ("hh:mm:ss") as local time of the
// machine that runs the program and returns the calendar time in seconds. Nothing is validated and
// nothing is thrown: texts of any other form are undefined behaviour. See mktime(3).
std::time_t cvt_DATE_TIME(char const* date, char const* time);

// The line that heads the help: name, version, the maker's notice and the build time. Years outside
// 1400 to 9999 may raise a std::out_of_range.
std::string banner(std::time_t build_time);
