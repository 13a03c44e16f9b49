# Where program and module lie. The program finds the module by one relative path, the same in the build
# tree, in an installed tree and in a moved one.

set(module_install_folder ${CMAKE_INSTALL_LIBDIR}/get-qmb-ver)
set(module_full_folder ${CMAKE_INSTALL_FULL_LIBDIR}/get-qmb-ver)
file(RELATIVE_PATH program_below_root ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_BINDIR})
file(RELATIVE_PATH module_below_root ${CMAKE_INSTALL_PREFIX} ${module_full_folder})
if("${program_below_root} ${module_below_root}" MATCHES "\\.\\./") # outside the prefix
  set(program_below_root .${CMAKE_INSTALL_FULL_BINDIR})
  set(module_below_root .${module_full_folder})
endif()
file(RELATIVE_PATH module_from_program
  ${CMAKE_INSTALL_FULL_BINDIR} ${module_full_folder}/fetch${CMAKE_SHARED_MODULE_SUFFIX})
