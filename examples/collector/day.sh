#!/usr/bin/env bash
#
# Shows a day of the edge router live in a collector: `qosoc serve` follows the router's change lines,
# and the collector prints what each of them did to the model, as gNMI brings it.
#
# usage: day.sh PATH_TO_QOSOC

set -euo pipefail
(($# == 1)) || {
  printf 'usage: %s PATH_TO_QOSOC\n' "$0" >&2
  exit 2
}
qosoc=$(realpath -- "$1")
cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")"

title='' plain=''
if [[ -t 1 && -z ${NO_COLOR-} ]]; then
  title=$'\e[1;36m' plain=$'\e[0m'
fi
heading() { printf '\n%s%s%s\n' "$title" "$1" "$plain"; }

folder=$(mktemp -d)
server=
collector=
finish() {
  local process
  for process in $collector $server; do kill "$process" 2>/dev/null || true; done
  wait
  rm -rf "$folder"
}
trap finish EXIT

mkfifo "$folder/changes" "$folder/first"
"$qosoc" serve ../edge-router/01-native.json --listen 127.0.0.1:0 --plaintext --quiet --changes - \
  <"$folder/changes" >"$folder/first" &
server=$!
exec 3>"$folder/changes"
read -r _ address <"$folder/first"

heading "qosoc serve 01-native.json --listen $address --plaintext --changes -"
heading "collector.py $address"
/usr/bin/python3 -B collector.py "$address" >"$folder/log" &
collector=$!
until grep -q '^in step' "$folder/log" 2>/dev/null; do
  kill -0 "$collector" # a collector that ended is never in step
  sleep 0.1
done
sed -n '1,8p' "$folder/log"
printf '  ...\n'
grep '^in step' "$folder/log"

shown=$(wc -l <"$folder/log")
while IFS= read -r change && IFS= read -r story <&4; do
  [[ -n $change ]] || continue
  heading "$story"
  printf '%s\n' "$change" >&3
  sleep "${DAY_PAUSE-0.5}"
  sed -n "$((shown + 1)),\$s/^/  /p" "$folder/log"
  shown=$(wc -l <"$folder/log")
done <../edge-router/02-change.jsonl 4<../edge-router/story.txt
heading 'The day is over. The server ends the streams, and the collector would try again.'
