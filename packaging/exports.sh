#!/usr/bin/env bash
# exports.sh LIBRARY: the functions and objects that it defines for others, as a sorted list.
#
# Without what has weak linkage: which inline functions and instances of templates a build holds, and
# exports, depends on the compiler and its options.
set -euo pipefail
nm -DC --defined-only "$1" | sed -nE 's/^[0-9a-f]+ [TDBR] //p' |
  sed -E 's/\[abi:cxx11\]//g
    s/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g
    s/std::basic_string_view<char, std::char_traits<char> >/std::string_view/g' |
  LC_ALL=C sort -u
