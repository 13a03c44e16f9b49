#include "cli/command_line.hpp"

#include "build_settings.hpp"

#include <boost/program_options.hpp>

#include <sstream>

namespace po = boost::program_options;

namespace {

po::options_description visible_options()
{
  po::options_description visible{"get-qmb-ver <options> <page target>\noptions"};
  visible.add_options()
      // clang-format off
      ("help", "produce help message")
      ("host", po::value<std::string>()->default_value(default_host), "host URL")
      ("port", po::value<std::string>()->default_value("443"), "port number")
      ("blocking", po::bool_switch(), "block until server response");
  // clang-format on
  return visible;
}

} // namespace

options_map parse_command_line(int argc, char* argv[], std::string const& home_directory)
{
  po::options_description hidden;
  hidden.add_options()
      // clang-format off
      ("ini-dir", po::value<std::string>()->default_value(home_directory))
      ("target", po::value<std::string>())
      ("debug", po::bool_switch());
  // clang-format on
  po::options_description all;
  all.add(visible_options()).add(hidden);
  po::positional_options_description positional;
  positional.add("target", 1);
  options_map options;
  store(po::command_line_parser(argc, argv).options(all).positional(positional).run(), options);
  notify(options);
  return options;
}

std::string options_help()
{
  std::ostringstream text;
  text << visible_options();
  return text.str();
}
