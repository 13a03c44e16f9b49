#pragma once

#include "fetch/module/https_exchange.hpp"

// Opens the module, see dlopen(3), and returns its function; the module stays open until the
// process ends. It is looked for in one place, a path from the program's own folder, fixed at build
// time: no working directory, search path or environment variable leads elsewhere. Raises
// std::runtime_error when the program's own path is unknown, or when the module or a library that
// it needs cannot be used; the message then names the file and the reason. A file that is cut short
// may end the process instead.
fetch_function* open_module();
