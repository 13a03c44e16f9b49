set --prepend fish_complete_path (dirname $argv)
complete -C "get-qmb-ver --ini-dir=/us" | grep -q /usr/ # a directory for this option
and not complete -C "get-qmb-ver " | grep -q . # no file for the page
and complete -C "get-qmb-ver --"
