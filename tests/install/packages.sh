#!/usr/bin/env bash
# packages.sh BUILD WORK VERSION: packs a build that is there, and fails unless the packages depend on
# each other as they should, hold what they should, and leave nothing installed in two of them.
set -euo pipefail
build=$1 work=$2 version=$3
library=libqosopenconfig${version%%.*}
failed=0

complain() {
  printf '%s\n' "$1" >&2
  failed=1
}

rm -rf "$work"
mkdir -p "$work"
(cd "$work" && cpack --config "$build/CPackConfig.cmake" -G DEB >log) || { cat "$work/log" && exit 1; }

file() { printf '%s\n' "$work"/packages/"$1"_*.deb; }
# holds PACKAGE FILE...: patterns.
holds() {
  local list pattern
  list=$(dpkg-deb --fsys-tarfile "$(file "$1")" | tar -t | sed 's/^\.//')
  for pattern in "${@:2}"; do
    grep -qE "^/usr/$pattern$" <<<"$list" || complain "$1 lacks $pattern"
  done
}
depends() { dpkg-deb -f "$(file "$1")" Depends; }

holds "$library" "lib/(.*/)?libqosopenconfig\.so\.$version" "lib/(.*/)?libqosopenconfig-host\.so\.$version" \
  "share/doc/$library/copyright" "share/doc/$library/changelog.gz"
holds libqosopenconfig-dev 'lib/(.*/)?libqosopenconfig-host\.so' 'lib/(.*/)?pkgconfig/qosopenconfig-host\.pc' \
  'lib/(.*/)?cmake/qosopenconfig/qosopenconfigConfig\.cmake' 'include/qosopenconfig/host/Feed\.h'
holds qosoc bin/qosoc 'share/man/man1/qosoc\.1\.gz' share/bash-completion/completions/qosoc \
  'share/zsh/.*/_qosoc' 'share/yang/modules/.*\.yang' 'share/qosopenconfig/qosoc-native\.schema\.json'
[[ $(depends libqosopenconfig-dev) == "$library (= $version)" ]] || complain "-dev: $(depends libqosopenconfig-dev)"
[[ $(depends qosoc) == "$library (= $version), "*libstdc++6* ]] || complain "qosoc: $(depends qosoc)"
[[ $(depends "$library") == *'libc6 (>= '*'libstdc++6 (>= '* ]] || complain "$library: $(depends "$library")"

for package in "$library" libqosopenconfig-dev qosoc; do
  dpkg-deb --fsys-tarfile "$(file "$package")" | tar -t | grep -v '/$'
done | sort | uniq -d | grep . && complain 'these are in two packages'

# The libraries of the one serve the program of the other, which finds them as the system does.
dpkg-deb -x "$(file "$library")" "$work/root"
dpkg-deb -x "$(file qosoc)" "$work/root"
objdump -p "$work/root/usr/bin/qosoc" | grep -E 'RPATH|RUNPATH' && complain 'qosoc looks in places of its own'
folder=$(dirname "$(find "$work/root" -name libqosopenconfig.so."${version%%.*}")")
[[ $(LD_LIBRARY_PATH=$folder "$work/root/usr/bin/qosoc" --version) == "qosoc $version" ]] || complain 'qosoc does not run'
exit $failed
