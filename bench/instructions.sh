#!/usr/bin/env bash
#
# Counts the instructions of one event, on a device of 1,000 and on one of 100,000, with callgrind:
# unlike times, they are the same on a busy machine.
#
#   instructions.sh BUILD_DIR [--gate] [--update]
#
# Always: fails if the two sizes of an event differ by more than a tenth, either way.
# --gate: fails too if an event takes 3 % more than instructions.txt says. The figures belong to a
#         compiler; under another one only the sizes are compared.
# --update: writes instructions.txt.

set -euo pipefail

small=1000
large=100000
repeat=1000
figures=$(dirname -- "${BASH_SOURCE[0]}")/instructions.txt

die() {
  printf 'instructions: %s\n' "$*" >&2
  exit 1
}

build=${1-}
[[ -n $build && $build != --* ]] || die 'usage: instructions.sh BUILD_DIR [--gate] [--update]'
shift
gate=false
update=false
for option in "$@"; do
  case $option in
    --gate) gate=true ;;
    --update) update=true ;;
    *) die "what is '$option'?" ;;
  esac
done

command -v valgrind >/dev/null || die 'there is no valgrind'
events=$build/bench/events
if [[ ! -x $events ]]; then
  cmake "$build" >/dev/null # it was configured before valgrind came
  cmake --build "$build" --target events
fi

# count EVENT SIZE: prints the two and the instructions of one event.
count() {
  local log total
  log=$(valgrind --tool=callgrind --callgrind-out-file=/dev/null --instr-atstart=no \
    --collect-atstart=no "$events" "$1" "$2" "$repeat" 2>&1) || die "$1 at $2: $log"
  total=$(sed -n 's/^==[0-9]*== Collected : \([0-9]*\)$/\1/p' <<<"$log")
  [[ -n $total ]] || die "$1 at $2: callgrind tells no count: $log"
  awk -v name="$1" -v size="$2" -v total="$total" -v repeat="$repeat" \
    'BEGIN { printf "%s %d %.1f\n", name, size, total / repeat }'
}
export -f count die
export events repeat

compiler=$("$events" --compiler)
counted=$(for size in "$large" "$small"; do
  "$events" --list | sed "s/\$/ $size/"
done | xargs -n 2 -P "$(nproc)" bash -c 'count "$1" "$2"' count) || die 'not all events were counted'

old=
if $gate; then
  [[ -e $figures ]] || die "there is no $figures; --update makes it"
  recorded=$(sed -n 's/^compiler //p' "$figures")
  if [[ $recorded == "$compiler" ]]; then
    old=$(grep -v '^#\|^compiler' "$figures")
  else
    printf 'Compiled by %s; the figures are of %s. Only the sizes are compared.\n' \
      "$compiler" "$recorded"
  fi
fi

if $update; then
  {
    printf '# Instructions of one event: name, class maps, count. Written by instructions.sh --update.\n'
    printf 'compiler %s\n' "$compiler"
    sort -k 1,1 -k 2,2n <<<"$counted"
  } >"$figures"
fi

"$events" --list | awk -v small="$small" -v large="$large" -v counted="$counted" -v old="$old" '
  function read_into(figures, text,   lines, fields, i, n) {
    n = split(text, lines, "\n")
    for (i = 1; i <= n; ++i) if (split(lines[i], fields) == 3) figures[fields[1], fields[2]] = fields[3]
  }
  function against(name, size,   was) {
    if (old == "") return
    if (!((name, size) in before)) {
      faults = faults "instructions: " name " at " size " is not in instructions.txt; --update adds it\n"
      return
    }
    was = before[name, size]
    if (now[name, size] > was * 1.03)
      faults = faults sprintf("instructions: %s at %d takes %.1f, %.1f %% more than the recorded %.1f\n", \
        name, size, now[name, size], (now[name, size] / was - 1) * 100, was)
  }
  BEGIN {
    read_into(now, counted)
    read_into(before, old)
    printf "%-28s %10d %10d %8s\n", "instructions of one event", small, large, "ratio"
  }
  {
    a = now[$1, small]; b = now[$1, large]
    printf "%-28s %10.1f %10.1f %8.3f\n", $1, a, b, b / a
    if (b > a * 1.1 || a > b * 1.1)
      faults = faults sprintf("instructions: %s depends on the size: %.1f at %d, %.1f at %d\n", \
        $1, a, small, b, large)
    against($1, small); against($1, large)
  }
  END {
    printf "%s", faults > "/dev/stderr"
    exit faults != ""
  }'
