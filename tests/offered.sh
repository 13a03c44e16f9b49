gzip -cdf "$1" | sed -n 's/^\.It Fl -/--/p'
