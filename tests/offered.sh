gzip -cdf "$1" | grep -q "Pa ~/.qvd_qmb_properties.ini" && gzip -cdf "$1" | sed -n 's/^\.It Fl -/--/p'
