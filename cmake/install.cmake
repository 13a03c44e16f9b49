# What is installed where, and the packages made of it.

option(GET_QMB_VER_DEBIAN "Install and package by Debian's rules" OFF)

configure_file(packaging/changelog.in changelog @ONLY)
find_program(GZIP gzip REQUIRED)
function(add_compressed source target)
  add_custom_command(OUTPUT ${target}
    COMMAND ${GZIP} -9nc ${source} > ${target} DEPENDS ${source} VERBATIM)
endfunction()
add_compressed(${PROJECT_SOURCE_DIR}/doc/get-qmb-ver.1 get-qmb-ver.1.gz)
add_compressed(${PROJECT_SOURCE_DIR}/CHANGELOG.md changelog.gz)
add_compressed(${PROJECT_BINARY_DIR}/changelog changelog.Debian.gz)
add_custom_target(compressed_documents ALL
  DEPENDS get-qmb-ver.1.gz changelog.gz changelog.Debian.gz)

install(TARGETS get-qmb-ver)
install(TARGETS fetch LIBRARY DESTINATION ${module_install_folder})
install(FILES ${PROJECT_BINARY_DIR}/get-qmb-ver.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES completions/get-qmb-ver.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME get-qmb-ver)
install(FILES completions/get-qmb-ver.fish
  DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
install(FILES README.md packaging/copyright DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(FILES doc/architecture.md doc/packaging.md doc/performance.md doc/publishing.md doc/speed.svg
  DESTINATION ${CMAKE_INSTALL_DOCDIR}/doc)
if(GET_QMB_VER_DEBIAN)
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz ${PROJECT_BINARY_DIR}/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(FILES completions/_get-qmb-ver
    DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
else()
  install(FILES CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
  install(FILES completions/_get-qmb-ver DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()

string(REPLACE "-" ";" version_parts ${GET_QMB_VER_VERSION})
list(POP_FRONT version_parts CPACK_PACKAGE_VERSION CPACK_DEBIAN_PACKAGE_RELEASE)
set(CPACK_PACKAGE_CONTACT ${GET_QMB_VER_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_PACKAGE_DESCRIPTION
  "get-qmb-ver answers at once from one small file in the user's home directory
and refreshes it in the background over HTTPS when the answer is older than a
day, so that scripts and prompts never wait for the network.")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_OUTPUT_FILE_PREFIX ${PROJECT_SOURCE_DIR}/dist)
set(CPACK_STRIP_FILES ON)
if(GET_QMB_VER_DEBIAN)
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_RECOMMENDS ca-certificates)
else()
  set(CPACK_GENERATOR TGZ)
  string(TOLOWER ${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR} system)
  set(CPACK_PACKAGE_FILE_NAME get-qmb-ver-${GET_QMB_VER_VERSION}-${system})
endif()
include(CPack)
