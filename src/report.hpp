#pragma once

#include <iostream>
#include <string_view>

// With debug, writes what went wrong as a line to standard error. The other lines of debug, which
// run_flow.cpp writes, go to standard output.
inline void report(std::string_view line, bool debug)
{
  if (debug)
    std::cerr << line << std::endl;
}
