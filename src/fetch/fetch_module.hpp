#pragma once

#include "fetch/module/https_exchange.hpp"

// Opens the module, see dlopen(3), and returns its function; the module stays open until the
// process ends. It is looked for in one place, at the relative path from the program's own file
// that was fixed at build time: no working directory, search path or environment variable leads
// anywhere else.
// Raises std::runtime_error when the path of the program is unknown, or when the module is missing,
// unreadable or something else, or a library that it needs is missing; the message then names the
// file and the reason. A module or library that is cut short on disk may end the process.
decltype(&fetch_over_https) open_fetch_module();
