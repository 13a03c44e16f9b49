#pragma once

#include <iostream>
#include <string_view>

// With debug, writes what went wrong as a line to standard error. What a run works on is shown on
// standard output instead, by run_flow.cpp: it belongs to the answer that stands there.
inline void report(std::string_view line, bool debug)
{
  if (debug)
    std::cerr << line << std::endl;
}
