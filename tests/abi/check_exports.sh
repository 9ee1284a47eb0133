#!/usr/bin/env bash
# Compares what a shared library exports with the list kept in the source tree, and with what the public headers mark
# for export.
#
# usage: check_exports.sh LIBRARY LIST HEADER...
#   LIST       the names that the library is to export, as exported_names.sh prints them
#   HEADER...  the library's public headers
set -euo pipefail

here=$(dirname "${BASH_SOURCE[0]}")
library=$1
list=$2
shift 2

exported=$(mktemp)
trap 'rm -f "$exported"' EXIT
"$here/exported_names.sh" "$library" >"$exported"

failed=0

if ! diff --label "$(basename "$list") (kept)" --label "$(basename "$library") (built)" -U 0 "$list" "$exported"; then
  cat <<TEXT
The exported names have changed. "-" is gone: programs that use it no longer start, so the soname must change.
"+" is new. If that is meant, run
  cmake --build BUILD_FOLDER --target update-abi-lists
and say in CHANGELOG.md what has changed.
TEXT
  failed=1
fi

# The classes, functions and variables that carry the export macro, "class NAME" or "other NAME".
marked=$(cat "$@" | awk '
  { sub(/\/\/.*/, "") }
  /^#/ { next }
  match($0, /(class|struct) RQ_API [A-Za-z0-9_]+/) {
    n = split(substr($0, RSTART, RLENGTH), word, " ")
    print "class", word[n]
    next
  }
  /RQ_API/ {
    sub(/.*RQ_API/, "")
    sub(/[(;=].*/, "")
    n = split($0, word, /[^A-Za-z0-9_]+/)
    while (n > 0 && word[n] == "") n--
    print "other", word[n]
  }')

# Second argument: the built names. A name belongs to what follows its first namespace.
if ! awk -v marked="$marked" '
  BEGIN {
    n = split(marked, line, "\n")
    for (i = 1; i <= n; i++) {
      split(line[i], word, " ")
      kind[word[2]] = word[1]
    }
  }
  {
    name = $0
    sub(/^(vtable|typeinfo|typeinfo name|VTT|guard variable) for /, "", name)
    sub(/^(non-)?virtual thunk to /, "", name)
    sub(/[(].*/, "", name)
    gsub(/\[abi:[a-z0-9]*\]/, "", name)
    split(name, part, "::")
    if (!(part[2] in kind)) {
      print "exported, but not marked in a public header: " $0
      bad = 1
    }
    seen[part[2]] = 1
  }
  END {
    for (name in kind)
      if (kind[name] == "other" && !(name in seen)) {
        print "marked in a public header, but not exported: " name
        bad = 1
      }
    exit bad
  }' "$exported"; then
  failed=1
fi

exit "$failed"
