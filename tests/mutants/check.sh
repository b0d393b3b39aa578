#!/usr/bin/env bash
# check.sh: fails when a known bug can no longer be put back, because its patch doesn't apply to the
# tree or doesn't say what it is. Without git it ends with 77, for a test that is skipped.
set -euo pipefail
cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/../.."
# The tree need not be a repository, and one further up is none of its own.
export GIT_DIR=/dev/null
failed=0

complain() {
  printf 'tests/mutants/%s.patch: %s\n' "$1" "$2" >&2
  failed=1
}

if ! command -v git >/dev/null; then
  echo 'skipped: there is no git, which applies the patches'
  exit 77
fi
for patch in tests/mutants/*.patch; do
  name=$(basename "$patch" .patch)
  if ! fault=$(git apply --check "$patch" 2>&1); then
    complain "$name" "no longer applies; make the change anew by hand: $fault"
  fi
  [[ $(head -n 1 "$patch") =~ ^[A-Z].* ]] || complain "$name" 'does not begin with what the bug is'
  # run.sh begins with the tests of the floor.
  (($(sed -n 's|^diff --git a/\([^/]*\)/.*|\1|p' "$patch" | sort -u | wc -l) == 1)) ||
    complain "$name" 'does not change one floor'
done
exit $failed
