#!/usr/bin/env bash
# Checks the directions of includes: each room of rqxml/ includes only the rooms that it stands on, public headers
# include public headers only, and tools, examples, benchmarks and fuzz targets use nothing but public headers.
#
# usage: check_includes.sh SOURCE_DIR PUBLIC_HEADERS
#   PUBLIC_HEADERS  a file with one header a line, relative to SOURCE_DIR/rqxml
set -euo pipefail

source_dir=$1
public_headers=$(realpath "$2")
cd "$source_dir"

# What each room may include: rooms, single headers, and folders of foreign libraries.
declare -A may_include=(
  [common]="common"
  [xml]="common xml xercesc"
  [fields]="common xml fields xercesc"
  [pmml]="common xml fields pmml xercesc"
  [settings]="common xml fields pmml settings xercesc"
  [datamodel]="common xml fields datamodel xercesc"
  [combiner]="common xml combiner xercesc"
  [encoding]="encoding common/RQExport.h unicode"
)
clients=(tools examples bench fuzz)

wrong=0
complain() {
  printf '%s includes %s: %s\n' "$1" "$2" "$3"
  wrong=$((wrong + 1))
}

# Prints what a source includes, one a line: own headers as room/Header.h, others as written.
includes_of() {
  sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*["<]([^">]+)[">].*/\1/p' "$1" | sed -E 's,^rqxml/,own:,'
}

is_public() { grep -qxF -- "$1" "$public_headers"; }

sources_in() { find "$@" -type f \( -name '*.h' -o -name '*.cpp' \) 2>/dev/null | sort; }

# is_listed NAME LIST...: NAME itself or its first folder stands in the list.
is_listed() {
  local name=$1 entry
  shift
  for entry in "$@"; do
    if [[ "$name" == "$entry" || "${name%%/*}" == "$entry" ]]; then
      return 0
    fi
  done
  return 1
}

check_room() {
  local room=$1 file include
  read -ra allowed <<<"${may_include[$room]}"
  for file in $(sources_in "rqxml/$room"); do
    for include in $(includes_of "$file"); do
      case "$include" in
        own:*)
          is_listed "${include#own:}" "${allowed[@]}" ||
            complain "$file" "${include#own:}" "rqxml/$room stands on ${may_include[$room]}"
          if is_public "${file#rqxml/}" && ! is_public "${include#own:}"; then
            complain "$file" "${include#own:}" "a public header includes an internal one"
          fi
          ;;
        xercesc/* | unicode/*)
          is_listed "$include" "${allowed[@]}" ||
            complain "$file" "$include" "rqxml/$room stands on ${may_include[$room]}"
          ;;
        *.h)
          if [[ -e "${file%/*}/$include" ]]; then
            complain "$file" "$include" "own headers are included as rqxml/<room>/<header>"
          fi
          ;;
      esac
    done
  done
}

check_client() {
  local file include
  for file in $(sources_in "$1"); do
    for include in $(includes_of "$file"); do
      if [[ "$include" == own:* ]]; then
        is_public "${include#own:}" || complain "$file" "${include#own:}" "not a public header"
      fi
    done
  done
}

rooms=0
for folder in rqxml/*/; do
  room=$(basename "$folder")
  if [[ -z "${may_include[$room]:-}" ]]; then
    complain "rqxml/$room" "anything" "the room is not known to this check"
    continue
  fi
  check_room "$room"
  rooms=$((rooms + 1))
done
for client in "${clients[@]}"; do
  check_client "$client"
done

if [[ $wrong -ne 0 ]]; then
  echo "$wrong wrong includes"
  exit 1
fi
if [[ $rooms -eq 0 ]]; then
  echo "no rooms below $source_dir/rqxml"
  exit 1
fi
echo "$rooms rooms and their clients include in the right direction"
