# bash completion for get-qmb-ver

_get_qmb_ver() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  # "--ini-dir=x" comes as three words.
  [[ $current == = ]] && current=
  [[ $previous == = ]] && previous=${COMP_WORDS[COMP_CWORD - 2]}
  COMPREPLY=()
  case $previous in
    --ini-dir)
      compopt -o filenames
      mapfile -t COMPREPLY < <(compgen -d -- "$current")
      ;;
    --host | --port | --target) ;;
    *)
      if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(
          compgen -W '--help --host --port --blocking --target --ini-dir --debug' -- "$current")
      fi
      ;;
  esac
}
complete -F _get_qmb_ver get-qmb-ver
