#!/usr/bin/env bash
#
# Shows what the program is for: a small native configuration, the OpenConfig model that it becomes,
# and what a change on the native side does to the model. Then a day in the life of a whole router.
#
# usage: demo.sh PATH_TO_QOSOC

set -euo pipefail
(($# == 1)) || {
  printf 'usage: %s PATH_TO_QOSOC\n' "$0" >&2
  exit 2
}
qosoc=$(realpath -- "$1")
cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")"

title='' cut='' added='' removed='' plain=''
if [[ -t 1 && -z ${NO_COLOR-} ]]; then
  title=$'\e[1;36m' cut=$'\e[2m' added=$'\e[32m' removed=$'\e[31m' plain=$'\e[0m'
fi

heading() { printf '%s%s%s\n' "$title" "$1" "$plain"; }

# difference BEFORE AFTER: the lines that changed, with a little of what is round them.
difference() {
  local line
  diff -U"${3-3}" <(printf '%s\n' "$1") <(printf '%s\n' "$2") | tail -n +4 |
    while IFS= read -r line; do
      case $line in
        @@*) printf '%s   ...%s\n' "$cut" "$plain" ;;
        +*) printf '%s%s%s\n' "$added" "$line" "$plain" ;;
        -*) printf '%s%s%s\n' "$removed" "$line" "$plain" ;;
        *) printf '%s%s%s\n' "$cut" "$line" "$plain" ;;
      esac
    done || true # diff tells by its exit code that there is a difference
}

# ===== One classifier

cd one-classifier
before=$("$qosoc" translate 01-native.json)
after=$("$qosoc" translate 01-native.json --changes 02-change.jsonl)

heading 'Three class maps of a router. Two bear names that stand for a classifier and its term.'
cat 01-native.json
heading '$ qosoc translate 01-native.json      the OpenConfig model'
printf '%s\n' "$before"
heading 'A change: the router gets one more class map.'
cat 02-change.jsonl
heading '$ qosoc translate 01-native.json --changes 02-change.jsonl      what it did to the model'
difference "$before" "$after"

# ===== A day of the edge router

cd ../edge-router
printf '\n'
heading "A day of a whole router (examples/edge-router), and what each change of it does to the model"
before=$("$qosoc" translate 01-native.json)
messages=$(mktemp)
trap 'rm -f "$messages"' EXIT
number=0 so_far=
while IFS= read -r change && IFS= read -r story <&3; do
  number=$((number + 1))
  so_far+=$change$'\n'
  [[ -n $change ]] || continue # a blank line counts, and that is all
  printf '\n'
  heading "$number. $story"
  # A refused line and an exception make the program's exit code 1, and are reported.
  after=$("$qosoc" translate 01-native.json --changes - <<<"$so_far" 2>"$messages") || true
  grep "^line $number:" "$messages" || true
  difference "$before" "$after" 1
  before=$after
done <02-change.jsonl 3<story.txt
