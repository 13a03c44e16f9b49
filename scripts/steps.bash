# shellcheck shell=bash
# What the scripts share: the project's folder, a temporary one that goes away with them, and steps.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

fail() {
  echo "${0##*/}: $*" >&2
  exit 1
}
# step WHAT COMMAND...: runs the command; shows its log when it fails, which ends the script.
step() {
  echo "$1" >&2
  "${@:2}" >"$folder/log" 2>&1 || { cat "$folder/log" >&2; fail "failed: $1"; }
}
# watched_step WHAT COMMAND...: a step that shows its progress. refused COMMAND...: it fails by 1.
watched_step() { echo "$1" >&2; "${@:2}" >&2 || fail "failed: $1"; }
refused() { local status=0; "$@" || status=$?; [ "$status" = 1 ]; }
