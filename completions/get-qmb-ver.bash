# bash completion for get-qmb-ver, from bash 3.2 on
# shellcheck shell=bash

_get_qmb_ver() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} word
  # "--ini-dir=x" comes as three words.
  [[ $current == = ]] && current=
  [[ $previous == = ]] && previous=${COMP_WORDS[COMP_CWORD - 2]}
  COMPREPLY=()
  case $previous in
    --ini-dir)
      type compopt &>/dev/null && compopt -o filenames
      while IFS= read -r word; do COMPREPLY+=("$word"); done < <(compgen -d -- "$current")
      ;;
    --host | --port | --target) ;;
    *)
      if [[ $current == -* ]]; then
        while IFS= read -r word; do COMPREPLY+=("$word"); done < <(
          compgen -W '--help --host --port --blocking --target --ini-dir --debug' -- "$current")
      fi
      ;;
  esac
}
complete -F _get_qmb_ver get-qmb-ver
