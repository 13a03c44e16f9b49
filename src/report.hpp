#pragma once

#include <iostream>
#include <string_view>

// With debug, writes what went wrong as a line to standard error. The lines that say what a run
// works on go with the answer, to standard output: see run_flow.cpp.
inline void report(std::string_view line, bool debug)
{
  if (debug)
    std::cerr << line << std::endl;
}
