# shellcheck shell=bash
# What the scripts share. Whoever sources it has a temporary folder, $folder, which goes away with
# the script, as its background jobs do.

folder=$(mktemp -d)
clean_up() {
  # shellcheck disable=SC2046 # a list of numbers
  kill $(jobs -p) 2>/dev/null || true
  rm -rf "$folder"
}
trap clean_up EXIT

fail() {
  echo "${0##*/}: $*" >&2
  exit 1
}

# step WHAT COMMAND...: runs the command, with a dot every five seconds. What it prints is shown
# only when it fails, which ends the script.
step() {
  local what=$1 dots
  shift
  printf '%s ...' "$what" >&2
  # A sleep outlives the loop that is killed: it must not hold our output open.
  (while sleep 5 >/dev/null 2>&1; do printf .; done) >&2 &
  dots=$!
  "$@" >"$folder/log" 2>&1 || { printf ' failed\n'; cat "$folder/log"; fail "$what: failed"; } >&2
  kill $dots
  wait $dots 2>/dev/null || true
  printf ' done\n' >&2
}
