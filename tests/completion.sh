#!/bin/sh
# completion.sh SHELL SHARE: whether the completion below the folder SHARE, where this shell looks
# for it, offers every option and nothing else. Ends with 77, skipped, without such a shell.
# shellcheck disable=SC2016 # what is offered is for the other shell to expand
set -eu
shell=$1
command -v "$shell" >/dev/null || { echo "needs $shell"; exit 77; }
case $shell in
  bash)
    file=$2/bash-completion/completions/get-qmb-ver
    offer='. "$FILE"; COMP_WORDS=(get-qmb-ver --) COMP_CWORD=1; _get_qmb_ver; echo ${COMPREPLY[@]}'
    ;;
  fish)
    file=$2/fish/vendor_completions.d/get-qmb-ver.fish
    offer='source $FILE; complete -C "get-qmb-ver --"'
    ;;
  zsh)
    file=$2/zsh/site-functions/_get-qmb-ver
    [ -e "$file" ] || file=$2/zsh/vendor-completions/_get-qmb-ver # on Debian
    offer='_arguments() { echo $@ }; . "$FILE"'
    ;;
esac
offered=$(FILE=$file "$shell" -c "$offer" | grep -o -e '--[a-z-]*' | sort -u | tr '\n' ' ')
echo "$shell offers: $offered"
[ "$offered" = '--blocking --debug --help --host --ini-dir --port --target ' ]
