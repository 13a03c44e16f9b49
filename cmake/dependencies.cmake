# Finds the libraries, or ends the configuration with the name of the package to install.

function(require name version packages)
  find_package(${name} ${version} QUIET ${ARGN})
  if(NOT ${name}_FOUND)
    message(FATAL_ERROR "${name} ${version} or newer is needed and was not found. "
                        "On Debian and Ubuntu install ${packages} (scripts/install-deps does).")
  endif()
endfunction()

set(Boost_USE_STATIC_LIBS ${GET_QMB_VER_STATIC_RUNTIME}) # read by Boost's own files
require(Boost 1.81
  "libboost1.81-dev, libboost-filesystem1.81-dev and libboost-program-options1.81-dev"
  CONFIG COMPONENTS filesystem program_options)
require(OpenSSL 3.0 "libssl-dev")
if(BUILD_TESTING)
  require(GTest 1.12 "libgtest-dev")
  require(Python3 3.11 "python3" COMPONENTS Interpreter)
endif()
