#!/usr/bin/env bash
#
# Shows in one screen what the program is for: a native configuration, the OpenConfig model that it
# becomes, one change on the native side, and what that change did to the model.
#
# usage: demo.sh PATH_TO_QOSOC

set -euo pipefail
(($# == 1)) || {
  printf 'usage: %s PATH_TO_QOSOC\n' "$0" >&2
  exit 2
}
qosoc=$(realpath -- "$1")
cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/one-classifier"

title='' cut='' added='' removed='' plain=''
if [[ -t 1 && -z ${NO_COLOR-} ]]; then
  title=$'\e[1;36m' cut=$'\e[2m' added=$'\e[32m' removed=$'\e[31m' plain=$'\e[0m'
fi

heading() { printf '%s%s%s\n' "$title" "$1" "$plain"; }

# difference BEFORE AFTER: the lines that changed, with a little of what is round them.
difference() {
  local line
  diff -U3 <(printf '%s\n' "$1") <(printf '%s\n' "$2") | tail -n +4 |
    while IFS= read -r line; do
      case $line in
        +*) printf '%s%s%s\n' "$added" "$line" "$plain" ;;
        -*) printf '%s%s%s\n' "$removed" "$line" "$plain" ;;
        *) printf '%s%s%s\n' "$cut" "$line" "$plain" ;;
      esac
    done || true # diff tells by its exit code that there is a difference
}

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
