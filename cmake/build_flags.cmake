# The flags that all targets share: warnings, and either hardening or the sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

add_library(build_flags INTERFACE)
target_compile_options(build_flags INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(GET_QMB_VER_SANITIZE)
  # Not vptr: its check opens a pipe and misfires in a process that is out of descriptors.
  set(sanitizers -fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all)
  target_compile_options(build_flags INTERFACE ${sanitizers} -fno-omit-frame-pointer)
  target_compile_definitions(build_flags INTERFACE _GLIBCXX_ASSERTIONS)
  target_link_options(build_flags INTERFACE ${sanitizers})
else()
  target_compile_options(build_flags INTERFACE
    -fstack-protector-strong -ffunction-sections -fdata-sections
    $<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  if(APPLE)
    target_link_options(build_flags INTERFACE -Wl,-dead_strip)
  else()
    target_link_options(build_flags INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,--gc-sections)
  endif()
endif()
if(GET_QMB_VER_STATIC_RUNTIME AND NOT APPLE) # where the C++ runtime is a part of the system
  target_link_options(build_flags INTERFACE -static-libstdc++ -static-libgcc)
endif()
