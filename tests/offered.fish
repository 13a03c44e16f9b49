set --prepend fish_complete_path (dirname $argv)
complete -C "get-qmb-ver --ini-dir=/us" | grep -q /usr/ # a directory for this option
and not begin; complete -C "get-qmb-ver "; complete -C "get-qmb-ver --ini-dir=/etc/pas"; end | grep -q . # no file
and complete -C "get-qmb-ver --"
