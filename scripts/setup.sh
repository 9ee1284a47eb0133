#!/usr/bin/env bash
# Installs the Debian packages that building, testing and measuring rqxml needs, and says which. Where all of them are
# there it changes nothing and needs no network. Works as root and with sudo.
#
# usage: scripts/setup.sh
set -euo pipefail

packages=(
  # compilers and build
  g++ clang libclang-rt-dev cmake make ninja-build pkg-config
  # the format check
  clang-format git
  # what the libraries stand on
  libxerces-c-dev libicu-dev
  # the command-line tool
  libcli11-dev nlohmann-json3-dev
  # tests and benchmarks
  libgtest-dev libgmock-dev libbenchmark-dev locales
)

say() { printf 'setup: %s\n' "$*"; }
fail() {
  printf 'setup: %s\n' "$*" >&2
  exit 1
}

is_installed() {
  [[ "$(dpkg-query -W -f='${db:Status-Status}\n' "$1" 2>/dev/null | head -n 1)" == installed ]]
}

as_root() {
  if [[ "$(id -u)" -eq 0 ]]; then
    "$@"
  else
    sudo "$@"
  fi
}

apt_install() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@"
}

if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
  fail "this is not a Debian system; install what these packages hold by hand: ${packages[*]}"
fi

missing=()
for package in "${packages[@]}"; do
  is_installed "$package" || missing+=("$package")
done

if [[ ${#missing[@]} -eq 0 ]]; then
  say "all ${#packages[@]} packages are there, nothing to do"
  exit 0
fi

if [[ "$(id -u)" -ne 0 ]] && ! command -v sudo >/dev/null; then
  fail "not root and no sudo; as root run: apt-get update && apt-get install ${missing[*]}"
fi

say "installing: ${missing[*]}"
if ! apt-cache show "${missing[@]}" >/dev/null 2>&1; then
  say "the package lists are missing or old; fetching them (apt-get update)"
  as_root apt-get update
  apt_install "${missing[@]}"
elif ! apt_install "${missing[@]}"; then
  say "that failed; once more with fresh package lists (apt-get update)"
  as_root apt-get update
  apt_install "${missing[@]}"
fi
say "done"
