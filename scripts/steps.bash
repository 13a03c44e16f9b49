# What the scripts share: a temporary folder, $folder, which goes away with the script, and steps.

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

refused() { ! "$@"; } # as a step: COMMAND has to fail
fail() {
  echo "${0##*/}: $*" >&2
  exit 1
}

# step WHAT COMMAND...: runs the command. Its log is shown only when it fails, which ends the script.
step() {
  echo "$1" >&2
  "${@:2}" >"$folder/log" 2>&1 || { cat "$folder/log" >&2; fail "failed: $1"; }
}

# watched_step WHAT COMMAND...: a step of which a terminal shows the progress.
watched_step() {
  if [ -t 1 ]; then echo "$1" >&2; "${@:2}" || fail "failed: $1"; else step "$@"; fi
}
