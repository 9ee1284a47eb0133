#!/usr/bin/env bash
# Prints the names that a shared library exports, demangled, sorted, each once. Instantiations of the standard
# library's templates are left out (every library that uses them exports them), and so are the linker's own marks.
#
# usage: exported_names.sh LIBRARY
set -euo pipefail

readonly standard='^_Z(T[VTISC]|GV)?Z?N?[rVKRO]*(S[tabsiod]|9__gnu_cxx)'
readonly linker='^(_init|_fini|_edata|_end|__bss_start)$'

nm -D --defined-only -- "$1" | awk '{ sub(/@.*/, "", $3); print $3 }' | grep -vE "$standard|$linker" | c++filt |
  sed -E -e 's/std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >/std::string/g' \
    -e 's/std::basic_(i|o)stream<char, std::char_traits<char> >/std::\1stream/g' \
    -e 's/std::vector<([^<>]+), std::allocator<\1 ?> >/std::vector<\1>/g' |
  LC_ALL=C sort -u
