# Where program and module lie, and how the module is linked. The program finds the module by one
# relative path, the same in the build tree, in an installed tree and in a moved one.

set(module_install_folder ${CMAKE_INSTALL_LIBDIR}/get-qmb-ver)
set(module_full_folder ${CMAKE_INSTALL_FULL_LIBDIR}/get-qmb-ver)
file(RELATIVE_PATH program_folder ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_BINDIR})
file(RELATIVE_PATH module_folder ${CMAKE_INSTALL_PREFIX} ${module_full_folder})
file(RELATIVE_PATH module_from_program
  ${CMAKE_INSTALL_FULL_BINDIR} ${module_full_folder}/fetch${CMAKE_SHARED_MODULE_SUFFIX})

function(add_fetch_module target)
  add_library(${target} MODULE ${ARGN})
  target_include_directories(${target} PRIVATE src)
  target_link_libraries(${target} PRIVATE build_flags Boost::headers OpenSSL::SSL OpenSSL::Crypto)
  target_compile_definitions(${target} PRIVATE
    BOOST_ASIO_DISABLE_ERROR_LOCATION # messages are for users: no file names of the build machine
    BOOST_ASIO_NO_DEPRECATED)
  set_target_properties(${target} PROPERTIES
    PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/${module_folder})
  # One exported symbol, so that the C++ runtimes of program and module never meet. Never unloaded:
  # OpenSSL and the C++ runtime leave functions to be called at exit.
  set(exports ${PROJECT_SOURCE_DIR}/src/fetch/module/exports.map)
  target_link_options(${target} PRIVATE -Wl,--version-script=${exports} -Wl,-z,nodelete)
  set_property(TARGET ${target} PROPERTY LINK_DEPENDS ${exports})
endfunction()
