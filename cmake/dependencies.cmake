# Finds the libraries, or ends the configuration with CMake's own diagnosis and what to install.

# get_qmb_ver_require(NAME FOUND HOMEBREW): ends the configuration unless FOUND is true; HOMEBREW is
# a package.
function(get_qmb_ver_require name found homebrew)
  if(NOT found)
    message(FATAL_ERROR "${name} was not found.\n"
                        "On Debian and Ubuntu: scripts/install-deps\n"
                        "On macOS: brew install ${homebrew}")
  endif()
endfunction()

if(GET_QMB_VER_STATIC_RUNTIME)
  set(Boost_USE_STATIC_LIBS ON) # read by Boost's own files
endif()
find_package(Boost 1.81 CONFIG COMPONENTS filesystem program_options)
get_qmb_ver_require("Boost 1.81 or newer" "${Boost_FOUND}" boost)
get_qmb_ver_require("Boost.Filesystem" "${Boost_filesystem_FOUND}" boost)
get_qmb_ver_require("Boost.Program_options" "${Boost_program_options_FOUND}" boost)
find_package(OpenSSL 3.0)
get_qmb_ver_require("OpenSSL 3.0 or newer" "${OPENSSL_FOUND}" openssl@3)
if(BUILD_TESTING)
  find_program(PYTEST NAMES pytest-3 pytest)
  get_qmb_ver_require(pytest "${PYTEST}" pytest)
endif()
