#include "fetch/module_loader.hpp"

#include "build_settings.hpp"

#include <boost/dll/runtime_symbol_info.hpp>
#include <boost/filesystem/operations.hpp>

#include <dlfcn.h>

#include <stdexcept>

fetch_function* open_module()
{
  // An absolute path; on some systems it is the symbolic link through which the program was called.
  auto const program = boost::dll::program_location();
  // This works even when the program or the working directory was removed meanwhile.
  auto const folder = weakly_canonical(program, program.root_path()).parent_path();
  auto const file = (folder / module_from_program).lexically_normal(); // for the message
  void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!module)
    throw std::runtime_error{dlerror()};
  void* const function = dlsym(module, "fetch_over_https");
  if (!function)
    throw std::runtime_error{dlerror()};
  return reinterpret_cast<fetch_function*>(function);
}
