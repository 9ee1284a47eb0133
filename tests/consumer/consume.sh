#!/usr/bin/env bash
# Builds the consumer program in one of the ways in which others use the library, runs it and checks what it prints.
#
# usage: consume.sh find_package|pkg_config|add_subdirectory PROJECT WORK
#   PROJECT  the consumer's folder
#   WORK     a folder for the build, made anew
# environment:
#   CXX, SHARED_FLAGS            compiler, and flags that library and consumer must share (sanitizers)
#   GENERATOR, MAKE_PROGRAM      for the ways that go through CMake
#   STAGE, LIBDIR                the installed tree and its library folder, relative to it
#   RQXML_SOURCE_DIR             the library's sources
#   RQXML_VERSION                the version asked for
set -euo pipefail

way=$1
project=$2
work=$3

rm -rf "$work"
mkdir -p "$work"

build_with_cmake() {
  cmake -S "$project" -B "$work" -G "$GENERATOR" -DCMAKE_MAKE_PROGRAM="$MAKE_PROGRAM" -DCMAKE_CXX_COMPILER="$CXX" \
    -DCMAKE_CXX_FLAGS="$SHARED_FLAGS" "$@"
  cmake --build "$work" --target consumer
}

case "$way" in
  find_package)
    build_with_cmake -DCMAKE_PREFIX_PATH="$STAGE" -DRQXML_VERSION="$RQXML_VERSION"
    ;;
  add_subdirectory)
    build_with_cmake -DRQXML_SOURCE_DIR="$RQXML_SOURCE_DIR"
    ;;
  pkg_config)
    export PKG_CONFIG_PATH="$STAGE/$LIBDIR/pkgconfig"
    pkg-config --exact-version="$RQXML_VERSION" rqxml
    read -ra flags <<<"$SHARED_FLAGS $(pkg-config --cflags rqxml)"
    read -ra libraries <<<"$(pkg-config --libs rqxml)"
    "$CXX" -std=c++17 "${flags[@]}" "$project/consumer.cpp" -o "$work/consumer" "${libraries[@]}"
    export LD_LIBRARY_PATH="$STAGE/$LIBDIR${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"
    ;;
  *)
    echo "unknown way: $way" >&2
    exit 2
    ;;
esac

printed=$("$work/consumer")
if [[ "$printed" != "age: Age in years" ]]; then
  printf 'the consumer printed: %s\n' "$printed"
  exit 1
fi
echo "the consumer works through $way"
