#!/bin/sh
# Builds the benchmarks and prints the tables of docs/performance.md. Run it on a quiet machine.
#   bench/run.sh [BUILD-FOLDER]
set -eu

source=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$source/build-bench}

cmake -S "$source" --preset bench -B "$build" >/dev/null
cmake --build "$build" --target rqxml_bench rqxml_bench_memory rqxml_bench_profile rqxml_bench_hostile \
  rqxml_bench_combiner rqxml_bench_encoding >/dev/null

bench() {
  "$build/bench/rqxml_bench" --markdown --benchmark_filter="$1"
}

# instructions floor|subject plain|bins|filter FIELDS
instructions() {
  valgrind --tool=callgrind --toggle-collect='*Profiled*' --callgrind-out-file=/dev/null \
    "$build/bench/rqxml_bench_profile" "$@" 2>&1 | sed -n 's/.*Collected : //p'
}

echo '## Reading: time'
echo
echo '| document, fields | MB | bare parse, ms | this library, ms | ratio | lower quartile | upper quartile |'
echo '|---|---|---|---|---|---|---|'
bench '^read_'
echo
echo '## Filling: growth'
echo
echo '| document | 1k fields, ms | 10k fields, ms | 100k fields, ms | exponent |'
echo '|---|---|---|---|---|'
bench '^growth_'
echo
echo '## Data models and statistics: what is read of a parsed document'
echo
echo '| fill, fields | MB | bare parse, ms | fill, ms | ratio | lower quartile | upper quartile |'
echo '|---|---|---|---|---|---|---|'
bench '^(datamodel|statistics)_fill'
echo
echo '| document | 1k fields, ms | 10k fields, ms | 100k fields, ms | exponent |'
echo '|---|---|---|---|---|'
bench '^(datamodel|statistics)_growth'
echo
echo '## Reading: peak memory'
echo
echo '| document, fields | bare parse, MB | this library, MB | variables kept, MB | (library - variables) / bare |'
echo '|---|---|---|---|---|'
"$build/bench/rqxml_bench_memory"
echo
if command -v valgrind >/dev/null; then
  echo '## Reading: instructions, 10k fields'
  echo
  echo '| document | bare parse, millions | this library, millions | ratio |'
  echo '|---|---|---|---|'
  for variant in plain bins filter; do
    echo "$variant $(instructions floor $variant 10000) $(instructions subject $variant 10000)" |
      awk '{ printf "| %s | %.1f | %.1f | %.3f |\n", $1, $2 / 1e6, $3 / 1e6, $3 / $2 }'
  done
  echo
fi
echo '## Utilities'
echo
echo '| list of doubles, numbers | ms |'
echo '|---|---|'
bench '^ListOfDoubles/'
echo
echo '| utility | ns | time / time of the plain way through the XML library |'
echo '|---|---|---|'
bench 'Tokenizer|Attribute|Comparison|UTF8'
echo
echo '## Merging splits'
echo
"$build/bench/rqxml_bench_combiner"
echo
echo '## Text encodings: this library / iconv, each in units of the time of ICU alone'
echo
"$build/bench/rqxml_bench_encoding"
echo
echo '## Hostile input'
echo
"$build/bench/rqxml_bench_hostile"
