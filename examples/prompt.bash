# The latest release before your own prompt in bash. Copy it, set host and page, and source the
# copy at the end of ~/.bashrc, after what sets PS1:
#
#     . ~/prompt.bash
#
# Where your PROMPT_COMMAND sets PS1 at each prompt, put '$(qmb_release)' into it yourself.
# Where a timer or cron fetches twice a day, no prompt starts a background copy.
qmb_host=www.example.org
qmb_page=/downloads/page

qmb_release() {
  local status=$? release # the status of your last command, for the rest of the prompt
  release=$(get-qmb-ver --host "$qmb_host" "$qmb_page" </dev/null 2>/dev/null |
    LC_ALL=C.UTF-8 sed 's/[[:cntrl:]]//g') || :
  [ -z "$release" ] || printf '[%s] ' "$release"
  return "$status"
}

# bash shows what the function prints as it is: nothing in it is expanded or executed.
# shellcheck disable=SC2016 # to be expanded at each prompt
[[ ${PS1-} == *'$(qmb_release)'* ]] || PS1='$(qmb_release)'${PS1-}
