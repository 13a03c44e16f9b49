# The latest release before your own prompt in zsh. Copy it, set host and page, and source the
# copy at the end of ~/.zshrc, after what sets the prompt:
#
#     . ~/prompt.zsh
#
# Where a timer or cron fetches twice a day, no prompt starts a background copy.
qmb_host=www.example.org
qmb_page=/downloads/page

# zsh prints elements of psvar as they are: nothing in them is expanded. The ninth is likely free.
qmb_release() {
  emulate -L zsh # whatever options you have set
  psvar[9]=$(get-qmb-ver --host "$qmb_host" "$qmb_page" </dev/null 2>/dev/null |
    LC_ALL=C.UTF-8 sed 's/[[:cntrl:]]//g') || :
  [[ $PS1 == *%9v* ]] || PS1='%(9V.[%9v] .)'$PS1 # some themes set it anew at each prompt
}

autoload -Uz add-zsh-hook
add-zsh-hook -d precmd qmb_release # anew, to come after your theme
add-zsh-hook precmd qmb_release
