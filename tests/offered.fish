set --prepend fish_complete_path (dirname $argv)
complete -C "get-qmb-ver --ini-dir=/us" | grep -q /usr/ # a directory is offered for this option
and complete -C "get-qmb-ver --"
