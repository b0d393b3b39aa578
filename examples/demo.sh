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

title='' added='' removed='' changed='' plain=''
if [[ -t 1 && -z ${NO_COLOR-} ]]; then
  title=$'\e[1;36m' added=$'\e[32m' removed=$'\e[31m' changed=$'\e[33m' plain=$'\e[0m'
fi

heading() { printf '%s%s%s\n' "$title" "$1" "$plain"; }

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# translate NATIVE [CHANGES]: prints the model, in the file `after`; the one before is in `before`.
# A refused line and an exception make the program's exit code 1, and are reported in `messages`.
translate() {
  [[ ! -e $folder/after ]] || mv "$folder/after" "$folder/before"
  "$qosoc" translate "$1" ${2+--changes "$2"} >"$folder/after" 2>"$folder/messages" || (($? == 1))
}

# difference: the leaves that changed, by their paths.
difference() {
  local line count=0
  "$qosoc" diff "$folder/before" "$folder/after" >"$folder/difference" || (($? == 1))
  while IFS= read -r line; do
    count=$((count + 1))
    case $line in
      +*) printf '  %s%s%s\n' "$added" "$line" "$plain" ;;
      -*) printf '  %s%s%s\n' "$removed" "$line" "$plain" ;;
      *) printf '  %s%s%s\n' "$changed" "$line" "$plain" ;;
    esac
  done <"$folder/difference"
  ((count > 0)) || printf '  no leaf changed\n'
}

# ===== One classifier

cd one-classifier
translate 01-native.json

heading 'Three class maps of a router. Two bear names that stand for a classifier and its term.'
cat 01-native.json
heading '$ qosoc translate 01-native.json      the OpenConfig model'
cat "$folder/after"
heading 'A change: the router gets one more class map.'
cat 02-change.jsonl
translate 01-native.json 02-change.jsonl
heading 'What it did to the model, leaf by leaf (qosoc translate --feed, qosoc diff)'
difference

# ===== A day of the edge router

cd ../edge-router
printf '\n'
heading "A day of a whole router (examples/edge-router), and what each change of it does to the model"
translate 01-native.json
number=0
: >"$folder/changes"
while IFS= read -r change && IFS= read -r story <&3; do
  number=$((number + 1))
  printf '%s\n' "$change" >>"$folder/changes"
  [[ -n $change ]] || continue # a blank line counts, and that is all
  printf '\n'
  heading "$number. $story"
  translate 01-native.json "$folder/changes"
  grep "^line $number:" "$folder/messages" | sed 's/^/  /' || true
  difference
done <02-change.jsonl 3<story.txt
