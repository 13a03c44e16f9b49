# shellcheck source=/dev/null
. "$1"
read -r -a registered <<<"$(complete -p get-qmb-ver)" # complete -F FUNCTION get-qmb-ver
COMP_WORDS=(get-qmb-ver --) COMP_CWORD=1
"${registered[2]}" get-qmb-ver -- get-qmb-ver
echo "${COMPREPLY[@]}"
