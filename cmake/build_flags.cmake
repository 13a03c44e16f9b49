# The flags that all targets share: warnings, and either hardening or the sanitizers.

set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CMakePushCheckState)
include(CheckCXXSourceCompiles)
if(PROJECT_IS_TOP_LEVEL) # it changes the programs of a project around this one, too
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
endif()

add_library(get-qmb-ver-flags INTERFACE)
target_compile_features(get-qmb-ver-flags INTERFACE cxx_std_20) # or a later one that is asked for
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
  # _FORTIFY_SOURCE needs optimisation. Where it is set, perhaps to more, it stays as it is.
  cmake_push_check_state(RESET)
  foreach(configuration ${CMAKE_BUILD_TYPE} ${CMAKE_CONFIGURATION_TYPES})
    string(TOUPPER CMAKE_CXX_FLAGS_${configuration} variable)
    string(APPEND CMAKE_REQUIRED_FLAGS " ${${variable}}")
  endforeach()
  unset(get_qmb_ver_needs_fortify_source CACHE) # the flags may have changed
  check_cxx_source_compiles("
    #if !defined __OPTIMIZE__ || defined _FORTIFY_SOURCE
    #error
    #endif
    int main() {}" get_qmb_ver_needs_fortify_source)
  cmake_pop_check_state()
  if(get_qmb_ver_needs_fortify_source)
    target_compile_options(get-qmb-ver-flags INTERFACE $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2>)
  endif()
  if(APPLE)
    target_link_options(get-qmb-ver-flags INTERFACE LINKER:-dead_strip)
  else()
    target_link_options(get-qmb-ver-flags INTERFACE LINKER:-z,relro,-z,now,--gc-sections)
  endif()
endif()
if(" ${CMAKE_CXX_FLAGS} ${CMAKE_EXE_LINKER_FLAGS} " MATCHES " (--?static|-static-pie) ")
  message(FATAL_ERROR "A program linked with ${CMAKE_MATCH_1} cannot open its module; "
                      "GET_QMB_VER_STATIC_RUNTIME=ON links statically what can be.")
endif()
if(GET_QMB_VER_STATIC_RUNTIME AND NOT APPLE) # Apple's is a part of the system
  target_link_options(get-qmb-ver-flags INTERFACE -static-libstdc++ -static-libgcc)
endif()
