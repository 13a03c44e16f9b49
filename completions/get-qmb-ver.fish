# fish completion for get-qmb-ver

complete -c get-qmb-ver -f
complete -c get-qmb-ver -l help -d 'print the version and the options'
complete -c get-qmb-ver -l host -x -d 'ask this server'
complete -c get-qmb-ver -l port -x -d 'ask at this port'
complete -c get-qmb-ver -l blocking -d 'fetch the page now'
complete -c get-qmb-ver -l target -x -d 'the page'
complete -c get-qmb-ver -l ini-dir -x -a '(__fish_complete_directories)' -d 'keep the answers here'
complete -c get-qmb-ver -l debug -d 'tell what happens'
