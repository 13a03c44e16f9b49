#pragma once

#include <boost/dll/shared_library.hpp>

// Opens the module of fetch/module, see dlopen(3). It is looked for in one place: as far from the
// program's own file as when both were built, wherever that is now. No working directory, search
// path or environment variable leads anywhere else.
// Raises std::runtime_error (boost::system::system_error is one) when the path of the program is
// unknown, or when the module is missing, unreadable, cut short or something else, or a library
// that it needs is missing; the message then names the file. Other damage is beyond the loader: it
// may end the process.
boost::dll::shared_library open_fetch_module();
