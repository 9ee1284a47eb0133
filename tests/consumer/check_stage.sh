#!/usr/bin/env bash
# Checks the installed tree by itself: both libraries under their sonames, every public header with all that it
# includes, no trace of the folder it was installed to, and a tool that starts.
#
# usage: check_stage.sh STAGE LIBDIR CHECK_HEADERS COMPILER SYSTEM_INCLUDE_DIR PUBLIC_HEADERS TOOL
#   CHECK_HEADERS   the script that compiles headers alone
#   PUBLIC_HEADERS  a file with one header a line
#   TOOL            1 when the tool was built, else 0
set -euo pipefail

stage=$1
libdir=$2
check_headers=$3
compiler=$4
system_include_dir=$5
public_headers=$6
tool=$7

fail() {
  echo "$*"
  exit 1
}

for library in rqxml rqcommon; do
  file="$stage/$libdir/lib$library.so"
  [[ -L "$file" ]] || fail "no link $file"
  soname=$(readelf -d "$file" | sed -nE 's/.*\(SONAME\).*\[(.*)\]/\1/p')
  [[ "$soname" =~ ^lib$library\.so\.[0-9.]+$ ]] || fail "lib$library.so has the soname '$soname', which has no version"
  [[ -e "$stage/$libdir/$soname" ]] || fail "no $libdir/$soname"
done

bash "$check_headers" "$compiler" 17 "$stage/include" "$system_include_dir" "$public_headers"
installed=$(find "$stage/include" -type f | wc -l)
[[ "$installed" -eq "$(wc -l <"$public_headers")" ]] || fail "$installed headers are installed, not the public ones alone"

if grep -rlF --include='*.cmake' --include='*.pc' "$(dirname "$stage")" "$stage"; then
  fail "these files name the folder in which they were made"
fi

if [[ "$tool" == 1 ]]; then
  env -u LD_LIBRARY_PATH "$stage/bin/rqxml" --version
fi
