# The flags that all targets share: warnings, and either hardening or the sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
include(CheckCXXSymbolExists)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

add_library(get-qmb-ver-flags INTERFACE)
target_compile_options(get-qmb-ver-flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(GET_QMB_VER_SANITIZE)
  # Not vptr: its check opens a pipe and misfires in a process that is out of descriptors.
  set(sanitizers -fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all)
  target_compile_options(get-qmb-ver-flags INTERFACE ${sanitizers} -fno-omit-frame-pointer)
  target_compile_definitions(get-qmb-ver-flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(get-qmb-ver-flags INTERFACE ${sanitizers})
else()
  target_compile_options(get-qmb-ver-flags INTERFACE
    -fstack-protector-strong -ffunction-sections -fdata-sections)
  # Without it, a response that breaks an assertion of Boost aborts the program. Packagers' build
  # types, as the "None" of Debian, do not define it by themselves.
  target_compile_definitions(get-qmb-ver-flags INTERFACE $<$<NOT:$<CONFIG:Debug>>:NDEBUG>)
  # Leaves a _FORTIFY_SOURCE alone that is set, perhaps to more; some compilers do when optimising.
  set(CMAKE_REQUIRED_FLAGS -O2)
  foreach(configuration ${CMAKE_BUILD_TYPE} ${CMAKE_CONFIGURATION_TYPES})
    string(TOUPPER CMAKE_CXX_FLAGS_${configuration} variable)
    string(APPEND CMAKE_REQUIRED_FLAGS " ${${variable}}")
  endforeach()
  check_cxx_symbol_exists(_FORTIFY_SOURCE "" fortify_source_is_set)
  if(NOT fortify_source_is_set)
    target_compile_options(get-qmb-ver-flags INTERFACE $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  endif()
  if(APPLE)
    target_link_options(get-qmb-ver-flags INTERFACE -Wl,-dead_strip)
  else()
    target_link_options(get-qmb-ver-flags INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,--gc-sections)
  endif()
endif()
if(GET_QMB_VER_STATIC_RUNTIME AND NOT APPLE) # Apple's is a part of the system
  target_link_options(get-qmb-ver-flags INTERFACE -static-libstdc++ -static-libgcc)
endif()
