# Where program and module lie: below the prefix, in the build tree and in a moved tree alike. The
# program finds the module by the relative path from its own folder.

if(NOT CMAKE_INSTALL_PREFIX MATCHES "^/.")
  message(FATAL_ERROR "CMAKE_INSTALL_PREFIX is '${CMAKE_INSTALL_PREFIX}', but has to be an absolute "
                      "path other than /.")
endif()
cmake_path(IS_PREFIX CMAKE_INSTALL_PREFIX "${CMAKE_INSTALL_FULL_BINDIR}" NORMALIZE has_program)
cmake_path(IS_PREFIX CMAKE_INSTALL_PREFIX "${CMAKE_INSTALL_FULL_LIBDIR}" NORMALIZE has_module)
file(RELATIVE_PATH program_folder "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_BINDIR}")
file(RELATIVE_PATH module_folder
  "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}/get-qmb-ver")
file(RELATIVE_PATH module_from_program
  "/${program_folder}" "/${module_folder}/fetch${CMAKE_SHARED_MODULE_SUFFIX}")
if(NOT (has_program AND has_module) OR program_folder STREQUAL ""
   OR module_from_program MATCHES "^get-qmb-ver/") # the program has this name
  message(FATAL_ERROR
    "CMAKE_INSTALL_BINDIR and CMAKE_INSTALL_LIBDIR are '${CMAKE_INSTALL_BINDIR}' and "
    "'${CMAKE_INSTALL_LIBDIR}', but have to be two folders below CMAKE_INSTALL_PREFIX.")
endif()
