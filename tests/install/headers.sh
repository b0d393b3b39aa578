#!/usr/bin/env bash
# headers.sh INCLUDE COMPILER...: fails unless each header below INCLUDE compiles as the first one of a
# source, twice, with the warnings that users ask for as errors. JOBS of them at once.
set -euo pipefail
include=$1
shift
count=$(find "$include" -name '*.h' | wc -l)
((count > 0)) || { printf 'no headers below %s\n' "$include" >&2 && exit 1; }

alone() {
  printf '#include "%s"\n' "$2" "$2" | "$1" -std=c++20 -fsyntax-only -Wall -Wextra -Wconversion -Wshadow \
    -Wpedantic -Werror -I "$include" -x c++ - || { printf '%s: %s\n' "$1" "$2" >&2 && exit 1; }
}
export -f alone
export include
for compiler in "$@"; do
  find "$include" -name '*.h' -printf '%P\0' |
    xargs -0 -P "${JOBS:-$(nproc)}" -I '{}' bash -c "alone $compiler {}"
  printf '%d headers are clean with %s\n' "$count" "$compiler"
done
