#!/usr/bin/env bash
# run.sh PACKAGES WORK [--whole]: what a new user does, on a bare Debian 12 that is made in WORK and goes
# again: install the packages, run qosoc, build and run programs with them. With --whole, `./dev demo`
# and `./dev test` of the tree's last commit, too. Prints the time that each step takes.
#
# It must run as root. What it downloads stays in WORK/archives.
set -euo pipefail
packages=$(realpath -- "$1")
work=$2
whole=${3-}
sources=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd)

die() {
  printf 'fresh: %s\n' "$*" >&2
  exit 1
}

((EUID == 0)) || die 'only root can make a system to install into'
# Mounts of an own namespace end with it.
[[ ${QOS_FRESH_MOUNTS-} == own ]] || QOS_FRESH_MOUNTS=own exec unshare --mount --propagation private "$0" "$@"

mkdir -p "$work/archives"
work=$(realpath -- "$work")
root=$(mktemp -d "$work/root.XXXXXX")
log=$work/log
cleanup() {
  local place
  for place in var/cache/apt/archives dev proc; do
    if mountpoint --quiet "$root/$place"; then umount --recursive --lazy "$root/$place"; fi
  done
  # Never through a mount that stayed.
  rm -rf --one-file-system "$root"
}
trap cleanup EXIT

times=()
# step NAME COMMAND...
step() {
  local name=$1 start=$SECONDS status=0
  shift
  printf '==> %s\n' "$name"
  # Not behind `if` or `||`: there the first command that fails would not end it.
  set +e
  (
    set -e
    "$@"
  ) >"$log" 2>&1
  status=$?
  set -e
  ((status == 0)) || { cat "$log" >&2 && die "$name failed"; }
  times+=("$(printf '%4d s  %s' $((SECONDS - start)) "$name")")
}
# within COMMAND...: in the new system, where nothing of ours is set.
within() {
  chroot "$root" /usr/bin/env -i HOME=/user PATH=/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 \
    DEBIAN_FRONTEND=noninteractive "$@"
}

bootstrap() {
  debootstrap --variant=minbase --cache-dir="$work/archives" bookworm "$root"
  mount -t proc proc "$root/proc"
  mount --rbind /dev "$root/dev"
  mount --bind "$work/archives" "$root/var/cache/apt/archives"
  cp /etc/resolv.conf "$root/etc/resolv.conf"
  mkdir "$root/packages" "$root/user"
  cp "$packages"/*.deb "$root/packages"
  cp -r "$sources/tests/install/outside" "$sources/examples" "$root/user"
}

# installed NAME...: packages by their names, or files below /packages by patterns.
installed() { within sh -c "apt-get install -y --no-install-recommends $*"; }

tool() {
  installed '/packages/libqosopenconfig0_*.deb' '/packages/qosoc_*.deb'
  within qosoc --version
  within qosoc translate /user/examples/one-classifier/01-native.json >"$work/openconfig.json"
  diff -u "$sources/examples/one-classifier/01-openconfig.json" "$work/openconfig.json"
}

# same PROGRAM: in the new system, it prints what the outside program should.
same() { diff -u "$sources/tests/install/outside/expected.txt" <(within "$@"); }

outside() {
  within cmake -S /user/outside -B /user/by-cmake
  within cmake --build /user/by-cmake
  same /user/by-cmake/outside
  # shellcheck disable=SC2016
  within sh -c 'g++ -std=c++20 /user/outside/outside.cpp -o /user/by-pkg-config \
    $(pkg-config --cflags --libs qosopenconfig-host)'
  same /user/by-pkg-config
}

agent() {
  within cmake -S /user/examples/agent -B /user/agent
  within cmake --build /user/agent
  within qosoc translate /user/examples/edge-router/01-native.json --save /user/state.json >/dev/null
  within timeout --preserve-status -s TERM 2 /user/agent/agent /user/socket /user/state.json /user/feed
  # Its first line is all that was saved; behind the signal the state was saved again.
  within sh -c 'head -1 /user/feed | grep -q "^{\"line\":0,.*/qos/"'
}

clone() {
  mkdir "$root/user/clone"
  git -C "$sources" archive HEAD | tar -x -C "$root/user/clone"
}

step 'a bare Debian 12' bootstrap
step 'package lists' within apt-get update
step 'qosoc, from its package' tool
step 'g++, cmake, pkg-config' installed g++ make cmake pkg-config
step 'the -dev package' installed '/packages/libqosopenconfig-dev_*.deb'
step 'a program outside, by CMake and by pkg-config' outside
step 'the agent' agent
if [[ $whole == --whole ]]; then
  step 'a clean tree' clone
  step './dev demo' within /user/clone/dev demo
  step './dev demo, again' within /user/clone/dev demo
  step './dev test' within /user/clone/dev test
fi
printf '\n'
printf '%s\n' "${times[@]}"
