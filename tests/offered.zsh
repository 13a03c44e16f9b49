fpath=("${1:h}" $fpath)
autoload -U compinit && compinit -u -D
_arguments() { print -r -- ${@#\(*\)} } # without what an option excludes
"$_comps[get-qmb-ver]"
