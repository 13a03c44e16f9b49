# Finds the libraries, or ends the configuration with what to do about it.

function(require name version extra_packages)
  find_package(${name} ${version} QUIET ${ARGN})
  if(NOT ${name}_FOUND)
    message(FATAL_ERROR "${name} ${version} or newer is needed and was not found. "
                        "On Debian and Ubuntu: scripts/install-deps ${extra_packages}")
  endif()
endfunction()

set(Boost_USE_STATIC_LIBS ${GET_QMB_VER_STATIC_RUNTIME}) # read by Boost's own files
require(Boost 1.81 "" CONFIG COMPONENTS filesystem program_options)
require(OpenSSL 3.0 "")
if(BUILD_TESTING)
  require(GTest 1.12 "libgtest-dev")
  require(Python3 3.11 "python3" COMPONENTS Interpreter)
endif()
