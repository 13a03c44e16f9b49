# Toolchain file: builds for arm64 with Debian's cross compiler and multiarch libraries.

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_INSTALL_LIBDIR lib/aarch64-linux-gnu CACHE PATH "")
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
