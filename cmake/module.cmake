# Where program and module lie, and how the module is linked. The program finds the module by one
# relative path, the same in the build tree, in an installed tree and in a moved one.

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

# add_module(TARGET ROOT SOURCE...): makes the module in its place below ROOT, with these
# sources for platform_trust.hpp.
function(add_module target root)
  add_library(${target} MODULE ${ARGN})
  target_link_libraries(${target} PRIVATE get-qmb-ver-module-objects)
  # $<1:...> keeps generators for several configurations from appending a folder such as Release.
  set_target_properties(${target} PROPERTIES
    PREFIX "" OUTPUT_NAME fetch LIBRARY_OUTPUT_DIRECTORY $<1:${root}/${module_below_root}>)
  # One exported symbol, so that the C++ runtimes of program and module never meet.
  if(APPLE)
    target_link_options(${target} PRIVATE -Wl,-exported_symbol,_fetch_over_https)
  else()
    set(exports ${PROJECT_SOURCE_DIR}/src/fetch/module/exports.map)
    target_link_options(${target} PRIVATE -Wl,--version-script=${exports})
    set_property(TARGET ${target} PROPERTY LINK_DEPENDS ${exports})
  endif()
endfunction()
