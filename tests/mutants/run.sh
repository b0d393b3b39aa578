#!/usr/bin/env bash
#
# Puts known bugs back, one at a time, and expects the tests to notice each of them.
#
#   run.sh [NAME...]     the patches of those names; without one, all of them
#
# A patch beside this script is one bug, in a system that is otherwise as it stands in the work
# tree. Its first lines say what the bug is and who would suffer. A bug that no test notices, and a
# patch that doesn't apply or doesn't build, is told at the end and fails the run.
#
# All happens in build/mutants, in a copy of the tracked files. It is built once, and a second copy
# keeps that build: whatever a bug changed is taken back from there, objects and all, so that only
# what a bug reaches is ever compiled. An interrupted run is no harm.
#
# JOBS sets how many compilers and tests run at once.

set -euo pipefail
cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/../.."

patches=$PWD/tests/mutants
area=$PWD/build/mutants
tree=$area/tree
pristine=$area/pristine # what the tree was when its tests were green
green=$area/green       # its time is that of the last such moment
stamp=$area/stamp       # its time is that of the last bug
jobs=${JOBS:-$(nproc)}

limit=120       # seconds that tests may take, together in one program or each for itself
memory=8388608  # KiB that one of them may take

# Without a repository git takes a patch for what it is: inside one it would leave out, silently,
# what isn't a part of it.
export GIT_DIR=/dev/null

die() {
  printf 'mutants: %s\n' "$*" >&2
  exit 1
}

# ===== The tree

# The paths of the tracked files, or of all files where there is no repository. The patches are not
# a part of the tree: in there, one of them doesn't apply.
tracked() {
  if [[ -e .git ]] && env -u GIT_DIR git rev-parse --git-dir >/dev/null 2>&1; then
    env -u GIT_DIR git ls-files -z
  else
    find . \( -path ./build -o -name '.?*' \) -prune -o -type f -printf '%P\0'
  fi | grep -zv '^tests/mutants/'
}

# Brings the tree in line with the work tree. Files that are the same keep their times.
copy_tree() {
  local file
  local -A known=()
  while IFS= read -r -d '' file; do
    [[ -f $file ]] || continue # deleted and not yet committed
    known[$file]=1
    cmp -s "$file" "$tree/$file" || install -D -m "$(stat -c %a "$file")" "$file" "$tree/$file"
  done < <(tracked)
  while IFS= read -r -d '' file; do
    [[ -n ${known[$file]-} ]] || { rm "$tree/$file" && rm -f "$green"; }
  done < <(cd "$tree" && find . -path ./build -prune -o -type f -printf '%P\0')
}

# Takes back all that happened to the tree since the stamp.
take_back() {
  local file
  [[ -e $stamp ]] || return 0
  (cd "$tree" && find . -newer "$stamp" \( -type f -o -type l \) -print0) |
    while IFS= read -r -d '' file; do
      if [[ -e $pristine/$file || -L $pristine/$file ]]; then
        cp -a "$pristine/$file" "$tree/$file"
      else
        rm -f "$tree/$file"
      fi
    done
  rm "$stamp"
}

configure() {
  if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-ccache}
  fi
  # Cheaper still to compile, and a bug that leaves something unused is a bug all the same.
  (cd "$tree" && cmake --preset dev -DQOS_WERROR=OFF \
    -DCMAKE_CXX_FLAGS_DEBUG='-O0 -D_GLIBCXX_ASSERTIONS') >"$area/configure.log" 2>&1 ||
    die "the tree cannot be configured: see $area/configure.log"
}

# build TARGET...: what it says goes to build.log.
build() { cmake --build "$tree/build/dev" --parallel "$jobs" --target "$@" >"$area/build.log" 2>&1; }

# The tree as it stands, built and green, with a copy to go back to.
prepare() {
  local program
  mkdir -p "$tree"
  take_back
  copy_tree
  if [[ -e $green && -d $pristine && -z $(find "$tree" -type f -newer "$green" -print -quit) ]]; then
    printf 'The tree is as it was when its tests were green.\n'
    return
  fi
  rm -rf "$green" "$pristine"
  printf 'Building the tree\n'
  configure
  build all || die "the tree does not build without any bug: see $area/build.log"
  printf 'Running its tests\n'
  for program in "$tree"/build/dev/tests/*/test_*; do
    [[ ! -x $program || $program == *.cmake ]] || run_program "$program" ||
      die "${program##*/} fails without any bug: see $area/tests.log"
  done
  run_all || die "the tests fail without any bug: see $area/tests.log"
  cp -a "$tree" "$pristine"
  sleep 0.05 # longer than the steps of a file's time
  touch "$green"
}

# ===== Tests

# run_program PROGRAM: a test program up to its first failure; its output goes to tests.log, and what
# bash says of one that crashes.
run_program() {
  (
    ulimit -c 0 -v "$memory"
    cd -- "$(dirname -- "$1")"
    timeout --kill-after=5 "$limit" "$1" --gtest_fail_fast || exit # by this shell
  ) >"$area/tests.log" 2>&1
}

# All tests as `./dev test` runs them, up to the first failure.
run_all() {
  (
    ulimit -c 0 -v "$memory"
    cd "$tree"
    ctest --preset dev --parallel "$jobs" --timeout "$limit" --stop-on-failure
  ) >"$area/tests.log" 2>&1
}

# The test that failed in a program, or in which the program ended.
failed_in_program() {
  local name
  name=$(sed -n 's/^\[  FAILED  \] \([^ ,]*\).*/\1/p' "$area/tests.log" | head -n 1)
  if [[ -z $name ]]; then
    name=$(sed -n 's/^\[ RUN      \] //p' "$area/tests.log" | tail -n 1)
  fi
  printf '%s' "$name"
}

# The test that ctest saw fail first.
failed_in_all() {
  sed -n 's|^ *[0-9]*/[0-9]* Test *#[0-9]*: \(.*[^ .]\) \.\.\..*\*\*\*.*|\1|p' "$area/tests.log" | head -n 1
}

# ===== Bugs

verdict= # of the bug that was put back last

# put_back PATCH: sets the verdict; fails unless the tests noticed.
put_back() {
  local patch=$1 floor name
  floor=$(sed -n 's|^+++ b/\([^/]*\)/.*|\1|p' "$patch" | head -n 1)
  touch "$stamp"
  sleep 0.05
  if ! (cd "$tree" && git apply "$patch") 2>"$area/apply.log"; then
    verdict="NO LONGER APPLIES: $(head -n 1 "$area/apply.log")"
    return 1
  fi

  # The tests of the floor are the likeliest to notice and the quickest to build.
  if [[ -e $tree/tests/$floor/CMakeLists.txt ]]; then
    name=${floor,,}
    if ! build "test_$name"; then
      verdict="DOES NOT BUILD: see $(keep_log build "$patch")"
      return 1
    fi
    if ! run_program "$tree/build/dev/tests/$floor/test_$name"; then
      verdict="killed by \"$name: $(failed_in_program)\""
      return 0
    fi
  fi
  if ! build all; then
    verdict="DOES NOT BUILD: see $(keep_log build "$patch")"
    return 1
  fi
  if ! run_all; then
    verdict="killed by \"$(failed_in_all)\""
    return 0
  fi
  verdict='SURVIVED'
  return 1
}

# keep_log KIND PATCH: puts a log aside under the patch's name and says where.
keep_log() {
  local kept
  kept=$area/$(basename "$2" .patch).$1.log
  cp "$area/$1.log" "$kept"
  printf '%s' "$kept"
}

# ===== The run

wanted=()
for name in "$@"; do
  name=$(basename "$name" .patch)
  [[ -f $patches/$name.patch ]] || die "there is no patch '$name' in tests/mutants"
  wanted+=("$patches/$name.patch")
done
if ((${#wanted[@]} == 0)); then
  wanted=("$patches"/*.patch)
fi
command -v git >/dev/null || die 'there is no git, which applies the patches'

prepare
# A signal waits for the compiler or the test that runs: it would go on writing into the tree.
trap take_back EXIT
trap 'exit 130' INT
trap 'exit 143' HUP TERM

faults=()
number=0
for patch in "${wanted[@]}"; do
  number=$((number + 1))
  start=$SECONDS
  name=$(basename "$patch" .patch)
  put_back "$patch" || faults+=("$name: $verdict")
  take_back
  printf '[%d/%d] %s: %s (%d s)\n' "$number" "${#wanted[@]}" "$name" "$verdict" $((SECONDS - start))
done

if ((${#faults[@]} != 0)); then
  printf '\n%d of %d bugs were not killed:\n' "${#faults[@]}" "${#wanted[@]}"
  printf '  %s\n' "${faults[@]}"
  exit 1
fi
printf '\nAll %d bugs were killed.\n' "${#wanted[@]}"
