fpath=("${1:h}" $fpath)
autoload -U compinit && compinit -u -D
# Without what an option excludes, and without those that lack the sign before their value.
_arguments() { set -- "${@#\(*\)}"; print -r -- "${@/(host|port|target|ini-dir)\[}" }
"$_comps[get-qmb-ver]"
