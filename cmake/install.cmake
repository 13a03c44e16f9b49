# What is installed where.

install(TARGETS get-qmb-ver DESTINATION ${program_folder})
install(TARGETS get-qmb-ver-module DESTINATION ${module_folder})
install(FILES doc/get-qmb-ver.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES completions/get-qmb-ver.bash
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME get-qmb-ver)
install(FILES completions/get-qmb-ver.fish
  DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
install(FILES completions/_get-qmb-ver DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
install(FILES COPYRIGHT DESTINATION ${CMAKE_INSTALL_DOCDIR} RENAME copyright)
install(FILES doc/publishing.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
