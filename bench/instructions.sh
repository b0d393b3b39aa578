#!/usr/bin/env bash
#
# Counts the instructions of one event, on devices of several sizes, with callgrind: unlike times,
# they are the same on a busy machine.
#
#   instructions.sh BUILD_DIR [--sizes N,N...] [--gate] [--update] [--out FILE]
#
# --sizes: the devices, smallest first; by default 1000,100000. Each is a multiple of 10. For each
#          event it prints how far apart the sizes are: the largest count to the smallest.
# Always: fails if the sizes of an event differ by more than a tenth.
# --gate: fails too if an event takes 3 % more than instructions.txt says. The figures belong to a
#         compiler; under another one only the sizes are compared.
# --update: writes instructions.txt.
# --out: writes the counts into a file, in the form of instructions.txt.

set -euo pipefail

sizes=1000,100000
repeat=1000
figures=$(dirname -- "${BASH_SOURCE[0]}")/instructions.txt

die() {
  printf 'instructions: %s\n' "$*" >&2
  exit 1
}

build=${1-}
[[ -n $build && $build != --* ]] ||
  die 'usage: instructions.sh BUILD_DIR [--sizes N,N...] [--gate] [--update] [--out FILE]'
shift
gate=false
update=false
out=
while (($# > 0)); do
  case $1 in
    --gate) gate=true ;;
    --update) update=true ;;
    --sizes) sizes=${2-} && shift ;;
    --out) out=${2-} && shift ;;
    *) die "what is '$1'?" ;;
  esac
  shift
done
[[ $sizes =~ ^[1-9][0-9]*0(,[1-9][0-9]*0)*$ ]] || die "--sizes: '$sizes' are no multiples of 10"

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
# The large ones first: the small ones then fill up what is left of the time.
counted=$(for size in $(tr ',' '\n' <<<"$sizes" | sort -rn); do
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

written() {
  printf '# Instructions of one event: name, objects, count. Written by instructions.sh.\n'
  printf 'compiler %s\n' "$compiler"
  sort -k 1,1 -k 2,2n <<<"$counted"
}
if $update; then written >"$figures"; fi
if [[ -n $out ]]; then written >"$out"; fi

"$events" --list | awk -v sizes="$sizes" -v counted="$counted" -v old="$old" '
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
    n = split(sizes, size, ",")
    printf "%-28s", "instructions of one event"
    for (i = 1; i <= n; ++i) printf " %10d", size[i]
    printf " %8s\n", "apart"
  }
  {
    printf "%-28s", $1
    least = most = now[$1, size[1]]
    for (i = 1; i <= n; ++i) {
      count = now[$1, size[i]]
      printf " %10.1f", count
      if (count < least) least = count
      if (count > most) most = count
      against($1, size[i])
    }
    apart = most / least
    printf " %8.3f\n", apart
    if (apart > widest) { widest = apart; widest_name = $1 }
    if (apart > 1.1)
      faults = faults sprintf("instructions: %s depends on the size: %.1f to %.1f\n", $1, least, most)
  }
  END {
    printf "%-28s furthest apart: %.3f, %s\n", "", widest, widest_name
    printf "%s", faults > "/dev/stderr"
    exit faults != ""
  }'
