set --prepend fish_complete_path (dirname $argv)
complete -C "get-qmb-ver --"
