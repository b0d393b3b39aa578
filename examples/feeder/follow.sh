#!/usr/bin/env bash
#
# Follows a device: takes a table dump of it every so many seconds and prints the feed.
#
# usage: follow.sh SECONDS DUMP_COMMAND...
#
# DUMP_COMMAND prints a dump (docs/feeding.md). A dump that can't be taken or has a bad row is
# reported and passed over: the next one is compared with the last good one. Ends when qosoc does,
# with its exit code.

set -euo pipefail
(($# >= 2)) || {
  printf 'usage: %s SECONDS DUMP_COMMAND...\n' "$0" >&2
  exit 2
}
seconds=$1
dump=("${@:2}")
feeder=$(dirname -- "$0")/feeder.py
folder=$(mktemp -d)
before=$folder/before.jsonl after=$folder/after.jsonl

follow() {
  while sleep "$seconds"; do
    "${dump[@]}" >"$after" || continue
    "$feeder" changes "$before" "$after" || continue
    mv "$after" "$before"
  done
}

trap 'jobs -p | xargs -r kill 2>/dev/null || :; rm -rf "$folder"' EXIT
"${dump[@]}" >"$before"
"$feeder" document "$before" >"$folder/native.json"
mkfifo "$folder/changes"
follow >"$folder/changes" &
"${QOSOC:-qosoc}" translate "$folder/native.json" --changes - --feed <"$folder/changes"
