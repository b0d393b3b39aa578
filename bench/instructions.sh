#!/usr/bin/env bash
#
# Counts the instructions of one event, on devices of several sizes, with callgrind: unlike times,
# they are the same on a busy machine.
#
#   instructions.sh BUILD_DIR [--sizes N,N...] [--gate] [--update] [--journal] [--out FILE]
#
# --sizes: the devices, smallest first; by default 1000,100000. Each is a multiple of 10. For each
#          event it prints how far apart the sizes are: the largest count to the smallest.
# Always: fails if the sizes of an event differ by more than a tenth.
# --gate: fails too if an event takes 3 % more than instructions.txt says. The figures belong to a
#         compiler; under another one only the sizes are compared.
# --update: writes instructions.txt.
# --journal: counts the events with a journal too, and the commits of a feed; measures what a feed
#         keeps. Fails if a journal takes more than 120 instructions a marked record, if a commit
#         of one changed leaf takes more than 1.2 times as many at one size as at another, or if
#         images take more than 60 bytes a leaf.
# --out: writes the counts into a file, in the form of instructions.txt.

set -euo pipefail

sizes=1000,100000
repeat=1000
most_a_mark=120
commit_apart=1.2
most_a_leaf=60
committed=(queue-bandwidth action-change) # they change one leaf
figures=$(dirname -- "${BASH_SOURCE[0]}")/instructions.txt

die() {
  printf 'instructions: %s\n' "$*" >&2
  exit 1
}

build=${1-}
[[ -n $build && $build != --* ]] ||
  die 'usage: instructions.sh BUILD_DIR [--sizes N,N...] [--gate] [--update] [--journal] [--out FILE]'
shift
gate=false
update=false
journal=false
out=
while (($# > 0)); do
  case $1 in
    --gate) gate=true ;;
    --update) update=true ;;
    --journal) journal=true ;;
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

# count EVENT SIZE [MODE]: prints the first two, the instructions of one event and, in a mode of
# the program, what it says of one.
count() {
  local log total told
  log=$(valgrind --tool=callgrind --callgrind-out-file=/dev/null --instr-atstart=no \
    --collect-atstart=no "$events" ${3+"$3"} "$1" "$2" "$repeat" 2>&1) || die "$1 at $2: $log"
  total=$(sed -n 's/^==[0-9]*== Collected : \([0-9]*\)$/\1/p' <<<"$log")
  [[ -n $total ]] || die "$1 at $2: callgrind tells no count: $log"
  told=$(grep -v '^==' <<<"$log" || :)
  awk -v name="$1" -v size="$2" -v total="$total" -v repeat="$repeat" -v told="$told" \
    'BEGIN { printf "%s %d %.1f%s\n", name, size, total / repeat, told == "" ? "" : " " told }'
}
export -f count die
export events repeat

# count_all [MODE]: counts the events that standard input names at all sizes. The large ones first:
# the small ones then fill up what is left of the time.
count_all() {
  local names size
  names=$(cat)
  for size in $(tr ',' '\n' <<<"$sizes" | sort -rn); do
    sed "s/\$/ $size${1+ $1}/" <<<"$names"
  done | xargs -L 1 -P "$(nproc)" bash -c 'count "$@"' count || die 'not all events were counted'
}

compiler=$("$events" --compiler)
counted=$("$events" --list | count_all)

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

verdict=0
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
  }' || verdict=1

# The cost of a journal: what an event takes more by the records that it marks.
journal_table() {
  printf '%s\n' "$with_journal" | sort -k 1,1 -k 2,2n | awk -v counted="$counted" -v most="$most_a_mark" '
    BEGIN {
      n = split(counted, lines, "\n")
      for (i = 1; i <= n; ++i) { split(lines[i], fields); alone[fields[1], fields[2]] = fields[3] }
      printf "\n%-28s %10s %8s %10s %10s %8s\n", "with a journal", "objects", "marks", "without", "with", "a mark"
    }
    {
      more = $3 - alone[$1, $2]
      printf "%-28s %10d %8.2f %10.1f %10.1f %8s\n", $1, $2, $4, alone[$1, $2], $3, \
        ($4 > 0 ? sprintf("%.1f", more / $4) : "")
      # An event of many allocations differs by a few from run to run.
      if (more > most * $4 + 2 + alone[$1, $2] / 1000)
        faults = faults sprintf("instructions: a journal takes %.1f more of %s at %d, %.2f marks; at most %d a mark\n", \
          more, $1, $2, $4, most)
    }
    END { printf "%s", faults > "/dev/stderr"; exit faults != "" }'
}

# Commits of one changed leaf each.
commit_table() {
  printf '%s\n' "$commits" | sort -k 1,1 -k 2,2n | awk -v apart="$commit_apart" '
    BEGIN { printf "\n%-28s %10s %8s %10s\n", "commit", "objects", "leaves", "count" }
    {
      printf "%-28s %10d %8.2f %10.1f\n", $1, $2, $4, $3
      if ($4 != 1) faults = faults "instructions: " $1 " at " $2 " changes " $4 " leaves, not one\n"
      if (!($1 in least) || $3 < least[$1]) least[$1] = $3
      if ($3 > largest[$1]) largest[$1] = $3
    }
    END {
      for (name in least)
        if (largest[name] > apart * least[name])
          faults = faults sprintf("instructions: the commit after %s depends on the size: %.1f to %.1f\n", \
            name, least[name], largest[name])
      printf "%s", faults > "/dev/stderr"
      exit faults != ""
    }'
}

# Memory is no matter of instructions, but as repeatable.
images_table() {
  "$events" --images 100000 | awk -v most="$most_a_leaf" '
    { printf "\nimages of 100000 terms: %.1f bytes a leaf\n", $1 }
    $1 > most {
      printf "instructions: images take %.1f bytes a leaf; at most %d\n", $1, most > "/dev/stderr"
      exit 1
    }'
}

if $journal; then
  with_journal=$("$events" --list | grep -vx floor | count_all --journal)
  commits=$(printf '%s\n' "${committed[@]}" | count_all --commit)
  journal_table || verdict=1
  commit_table || verdict=1
  images_table || verdict=1
fi
exit "$verdict"
