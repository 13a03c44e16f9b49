# The options, each declared at the beginning of a line: scripts read their names here.

set(GET_QMB_VER_DEFAULT_HOST "www.example.com" CACHE STRING "The server asked without --host")
set(GET_QMB_VER_NOTICE ", provided as is without any warranty" CACHE STRING
    "The maker's notice, put right after the version in the first line of the help")
option(GET_QMB_VER_STATIC_RUNTIME "Link Boost and the C++ runtime statically" OFF)
option(GET_QMB_VER_SANITIZE "Build with ASan and UBSan, fatal at the first finding" OFF)
option(BUILD_TESTING "Build the tests" OFF)
