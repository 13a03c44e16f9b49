fpath=("${1:h}" $fpath)
autoload -U compinit && compinit -u -D
_arguments() { print -r -- "$@" }
"$_comps[get-qmb-ver]"
