# shellcheck shell=sh # the options that the manual explains
gzip -cdf "$1" | sed -n 's/^\.It Fl -/--/p'
