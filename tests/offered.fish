# The options that fish offers with the file's folder in its path.
set --prepend fish_complete_path (dirname $argv)
complete -C "get-qmb-ver --"
