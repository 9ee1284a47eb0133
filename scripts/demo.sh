#!/usr/bin/env bash
# Sets the machine up, builds the tool and shows what it does with the documents in examples/.
#
# usage: scripts/demo.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh
cmake --preset release
cmake --build --preset release --target rqxml_tool

rqxml="build-release/tools/rqxml/rqxml"

# Prints a command as one would type it, then runs it.
show() {
  printf '\n$ rqxml'
  printf ' %q' "$@"
  printf '\n'
  "$rqxml" "$@"
}

# Every document, then what the options add.
for document in examples/*.pmml; do
  show vars "$document"
done
show vars --bins examples/customers.pmml
show vars --json --fields region examples/customers.pmml

# A settings document, whole and one parameter of it.
show settings examples/settings/regression.xml
show vars --bins --derived --fields 'rent,log rent' examples/settings/regression.xml
show get examples/settings/regression.xml quantiles
show get examples/settings/regression.xml steps --scope stepping/limits

# A data-model document, and the statistics that two models keep; those of two fields cannot be read, which is told.
show vars --field-roles --flag --count 5 examples/datamodel/loans.xml
show stats examples/bicycles.pmml
show stats --model ticket examples/bicycles.pmml || [[ $? -eq 1 ]]
show stats --json --field ticket --model ticket examples/bicycles.pmml

# The models of four splits of the data become one document, whose variables are those of the models and the split
# variables.
combined="$(mktemp -d)"
trap 'rm -rf "$combined"' EXIT
show combine -o "$combined/spending.pmml" --manifest examples/splits/splits.csv --label "region=Sales region"
show vars "$combined/spending.pmml"

# Text in other encodings, and what a code page is.
show recode --from UTF-8 --to 1252 --json examples/datamodel/loans.xml "$combined/loans.1252.xml"
show recode --from 1252 --to UTF-8 --strict "$combined/loans.1252.xml" "$combined/loans.xml"
cmp "$combined/loans.xml" examples/datamodel/loans.xml
show encodings
show encodings 1252

# Pictures of the fields, and a page about a whole document.
show stats --field weekday --svg "$combined/pictures" --html "$combined/bicycles.html" examples/bicycles.pmml
ls "$combined/pictures"
