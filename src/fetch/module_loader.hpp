#pragma once

#include "fetch/module/https_exchange.hpp"

// Opens the module, see dlopen(3), and returns its function; the module stays open until the
// process ends. It is looked for in one place, by a path relative to the program's own folder that
// was fixed at build time: no working directory, search path or environment variable leads anywhere
// else.
// Raises std::runtime_error when the program's own path is unknown, and when the module or a
// library that it needs cannot be used: the message names the file and the reason. A file that is
// cut short may end the process instead.
decltype(&fetch_over_https) open_module();
