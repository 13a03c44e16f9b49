#include "fetch/module_loader.hpp"

#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/filesystem/operations.hpp>

#include <dlfcn.h>

#include <stdexcept>

fetch_function* open_module()
{
  // On some systems program_location() is the symbolic link through which the program was called.
  auto const program = weakly_canonical(boost::dll::program_location());
  auto const file = (program.parent_path() / MODULE_FROM_PROGRAM).lexically_normal();
  void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module)
    throw std::runtime_error{dlerror()};
  void* const function = dlsym(module, "fetch_over_https");
  if (!function)
    throw std::runtime_error{dlerror()};
  return reinterpret_cast<fetch_function*>(function);
}
