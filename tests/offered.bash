# shellcheck source=/dev/null
. "$1"
read -r -a registered <<<"$(complete -p get-qmb-ver)" # complete -F FUNCTION get-qmb-ver
COMP_WORDS=(get-qmb-ver -- --ini-dir "$1") # a file, which is not to be offered as a directory
for COMP_CWORD in 1 3; do "${registered[2]}"; echo "${COMPREPLY[@]/#\//--}"; done
