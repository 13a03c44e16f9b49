#pragma once

#include <iostream>
#include <string_view>

// Writes the line to standard error when debug is set; else does nothing.
inline void report(std::string_view line, bool debug)
{
  if (debug)
    std::cerr << line << std::endl;
}
