#!/usr/bin/env bash
# check.sh SOURCES BUILD FOLDER COMPILER [FLAGS]: installs a build that is there into FOLDER/prefix, by way of
# another place, and builds programs with what lies there: by CMake, by pkg-config, and within a CMake
# project of its own that takes the sources. Each must do what outside/expected.txt says.
set -euo pipefail
sources=$1 build=$2 work=$3 compiler=$4 flags=${5-}
here=$sources/tests/install
strict='-Wall -Wextra -Wconversion -Wshadow -Wpedantic -Werror'
prefix=$work/prefix

die() {
  printf '%s\n' "$*" >&2
  exit 1
}

# same PROGRAM: fails unless it prints what is expected.
same() {
  diff -u "$here/outside/expected.txt" <("$@") || die "$1 printed something else"
}

rm -rf "$work"
mkdir -p "$work"
cmake --install "$build" --prefix "$work/first" >/dev/null
mv "$work/first" "$prefix"
libraries=$(dirname "$(find "$prefix" -name libqosopenconfig.so)")
[[ $("$prefix/bin/qosoc" --version) == "qosoc "* ]] || die 'the installed qosoc does not run'
share=$prefix/share
cmp "$share/qosopenconfig/qosoc-native.schema.json" <("$prefix/bin/qosoc" schema)
cmp <(gzip -dc "$share/man/man1/qosoc.1.gz") <("$prefix/bin/qosoc" manual)
cmp "$share/bash-completion/completions/qosoc" <("$prefix/bin/qosoc" completion bash)
cmp "$share/zsh/site-functions/_qosoc" <("$prefix/bin/qosoc" completion zsh)
[[ -s $share/yang/modules/qosopenconfig/qosoc-augments.yang ]]
if grep -rIlF -e "$sources" -e "$work" "$prefix"; then die 'these name folders of the build'; fi

# configure FOLDER SOURCES [CMAKE ARGUMENTS]
configure() {
  cmake -G Ninja -S "$2" -B "$work/$1" -DCMAKE_CXX_COMPILER="$compiler" \
    -DCMAKE_CXX_FLAGS="$flags $strict" "${@:3}" >"$work/$1.log" || die "$(<"$work/$1.log")"
}

# By CMake, with the host and with the translators alone.
configure cmake "$here/outside" -DCMAKE_PREFIX_PATH="$prefix"
cmake --build "$work/cmake" >"$work/build.log" || die "$(<"$work/build.log")"
same "$work/cmake/outside"
"$work/cmake/translators"

# A component that the package doesn't have.
if missing=$(cmake -G Ninja -S "$here/outside" -B "$work/component" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_CXX_COMPILER="$compiler" '-DQOS_COMPONENTS=COMPONENTS;nonsense' 2>&1); then
  die 'the package is found with a component that it does not have'
fi
[[ $missing == *'no components, such as nonsense'* ]] || die "$missing"

# The agent of the examples, which is a project of its own.
configure agent "$sources/examples/agent" -DCMAKE_PREFIX_PATH="$prefix"
cmake --build "$work/agent" >"$work/build.log" || die "$(<"$work/build.log")"
usage=$("$work/agent/agent" 2>&1) && die 'the agent runs without a socket'
[[ $usage == 'agent: usage: '* ]] || die "the agent says: $usage"

# By pkg-config: its Requires bring the translators.
export PKG_CONFIG_PATH=$libraries/pkgconfig
# shellcheck disable=SC2046,SC2086
"$compiler" $flags $strict -std=c++20 "$here/outside/outside.cpp" -o "$work/outside" \
  $(pkg-config --cflags --libs qosopenconfig-host)
LD_LIBRARY_PATH=$libraries same "$work/outside"

# As a part of another project: its targets are there, and what we ask of our own sources stays ours.
configure part "$here/outside" -DQOS_SOURCES="$sources" -DCMAKE_EXPORT_COMPILE_COMMANDS=ON -DCMAKE_BUILD_TYPE=
ninja -C "$work/part" -n outside >/dev/null
command=$(ninja -C "$work/part" -t compdb | grep -F 'outside.cpp.o -c' | grep '"command"')
for own in -fvisibility -fno-semantic-interposition -O3 -DNDEBUG; do
  [[ $command != *" $own"* ]] || die "$own reaches another project: $command"
done
if ninja -C "$work/part" -t targets all | grep -E '^(tests|bench)/|^test_|^install:|^qosoc_pages:'; then
  die 'tests, rules to install or what they install are in another project'
fi
