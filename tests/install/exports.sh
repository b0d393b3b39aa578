#!/usr/bin/env bash
# exports.sh SOURCES INCLUDE LIBRARY...: fails when a library exports something else than its list in
# packaging/exports says, when a header of the host that is installed isn't exported or one that isn't
# is, and when the host's library needs more than the translators' and the standard library.
set -euo pipefail
sources=$1 include=$2
shift 2
failed=0

complain() {
  printf '%s\n' "$1" >&2
  failed=1
}

for library in "$@"; do
  list=packaging/exports/$(basename "$library" .so).txt
  diff -u --label "$list" --label "$library" "$sources/$list" <(bash "$sources/packaging/exports.sh" "$library") ||
    complain "$library exports something else: if that is meant, ./dev exports --write makes the list"
  foreign=$(nm -DC --defined-only "$library" | grep -i rapidjson) && complain "exported: $foreign"
  while read -r name; do
    case $name in
      libqosopenconfig.so.* | libstdc++.so.* | libgcc_s.so.* | libc.so.* | libm.so.* | ld-linux*) ;;
      *) complain "$library needs $name" ;;
    esac
  done < <(objdump -p "$library" | awk '$1 == "NEEDED" { print $2 }')
done

# A header exports all that it declares, or nothing.
exported=$(cd "$sources" && grep -rl --include='*.h' '^namespace QOS_EXPORT host {' host | sort)
installed=$(cd "$include" && find host -name '*.h' | sort)
[[ $exported == "$installed" ]] ||
  complain "$(diff --label exported --label installed -u <(echo "$exported") <(echo "$installed"))"
exit $failed
