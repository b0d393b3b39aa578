#!/usr/bin/env bash
# abi.sh OLD NEW NAME...: compares the libraries that lie installed below two folders, by what their
# headers show. Prints the differences; fails when programs that were built with the old ones could
# not go on with the new ones although the name by which they are loaded is the same.
set -euo pipefail
old=$1 new=$2
shift 2

library() { readlink -e "$(find "$1" -name "$2.so")"; }
soname() { objdump -p "$1" | awk '$1 == "SONAME" { print $2 }'; }

failed=0
for name in "$@"; do
  before=$(library "$old" "$name")
  after=$(library "$new" "$name")
  compare=(abidiff --headers-dir1 "$old/include" --headers-dir2 "$new/include" "$before" "$after")
  printf '==> %s\n' "$name"
  status=0
  "${compare[@]}" || status=$?
  ((status == 0)) && printf 'no difference\n' && continue
  ((status & 3)) && exit 2
  # What is new alone breaks nothing.
  if ! "${compare[@]}" --no-added-syms >/dev/null; then
    if [[ $(soname "$before") == "$(soname "$after")" ]]; then
      printf '%s is still %s, and it is another ABI\n' "$name" "$(soname "$after")"
      failed=1
    fi
  fi
done
exit $failed
