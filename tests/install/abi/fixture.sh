#!/usr/bin/env bash
# fixture.sh SCRIPT WORK COMPILER: builds pairs of a tiny library and fails unless the script finds
# those alike, and only those, whose programs can go on with the other one.
set -euo pipefail
script=$1 work=$2 compiler=$3
rm -rf "$work"

# library FOLDER SONAME HEADER: of a class that the header declares.
library() {
  mkdir -p "$work/$1/include" "$work/$1/lib"
  printf '#pragma once\n%s\n' "$3" >"$work/$1/include/box.h"
  cat >"$work/$1/box.cpp" <<'END'
#include "box.h"
struct Inside {
  int a;
#ifdef MORE_INSIDE
  int b;
#endif
};
int inside(Inside& inside) { return inside.a; }
int Box::size() const { return high; }
#ifdef SECOND
int second() { return 2; }
#endif
END
  # shellcheck disable=SC2086
  "$compiler" -g -O0 -shared -fPIC ${4-} -Wl,-soname,"$2" -I"$work/$1/include" "$work/$1/box.cpp" \
    -o "$work/$1/lib/libbox.so"
}

box='struct Box { int wide; int high; int size() const; };'
library base libbox.so.0 "$box"
library same libbox.so.0 "$box"
library inside libbox.so.0 "$box" -DMORE_INSIDE
library added libbox.so.0 "$box int second();" -DSECOND
library member libbox.so.0 'struct Box { int deep; int wide; int high; int size() const; };'
library renamed libbox.so.1 'struct Box { int deep; int wide; int high; int size() const; };'

failed=0
# expect VERDICT OLD NEW [TEXT]
expect() {
  local verdict=same output
  output=$(bash "$script" "$work/$2" "$work/$3" libbox) || verdict=another
  if [[ $verdict != "$1" || $output != *"${4-}"* ]]; then
    printf '%s to %s should be %s:\n%s\n' "$2" "$3" "$1" "$output" >&2
    failed=1
  fi
}
expect same base same 'no difference'
expect same base inside 'no difference'
expect same base added 'second()'
expect another added base 'second()'
expect another base member 'deep'
expect same base renamed 'deep'
exit $failed
