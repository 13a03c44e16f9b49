#include "spawn/background_copy.hpp"

#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/format.hpp>
#include <boost/program_options/variables_map.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <string>

namespace {

// These messages are fixed, misspellings and "(first fork)" included: scripts may look for them.
bool report_failure(char const* message)
{
  std::cerr << message << std::endl;
  return false;
}

bool discard_output()
{
  int const null = open("/dev/null", O_WRONLY);
  if (null < 0)
    return report_failure("Unble to open /dev/null.");
  if (dup2(null, STDOUT_FILENO) < 0 || dup2(null, STDERR_FILENO) < 0)
    return report_failure("dup2 call failed.");
  // The copy keeps the descriptor: all that it holds is /dev/null.
  return true;
}

std::string argument(char const* pattern, options_map const& options, char const* name)
{
  return str(boost::format{pattern} % options[name].as<std::string>());
}

} // namespace

bool spawn_blocking(options_map const& options)
{
  pid_t const copy = fork();
  if (copy < 0)
    return report_failure("Unable to start child process (first fork).");
  if (copy > 0)
    return true;
  if (!discard_output())
    return false;

  auto const program = boost::dll::program_location().string();
  auto const host = argument("--host=%1%", options, "host");
  auto const port = argument("--port=%1%", options, "port");
  auto const target = argument("--target=%1%", options, "target");
  auto const ini_dir = argument("--ini-dir=%1%", options, "ini-dir");
  execl(program.c_str(), program.c_str(), host.c_str(), port.c_str(), target.c_str(),
        ini_dir.c_str(), "--blocking", nullptr);
  int const error = errno;
  // Standard error is /dev/null by now: only a trace of system calls shows this message.
  std::cerr << "Exec error: " << error << ", " << std::strerror(error) << std::endl;
  return false;
}
