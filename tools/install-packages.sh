#!/usr/bin/env bash
# Installs packages of Debian 12, by the name of a set below or by their own. What is there already is left alone; what
# cannot be had is said in a sentence.
#   tools/install-packages.sh SET|PACKAGE...
set -euo pipefail
cd "$(dirname "$0")/.."

declare -A sets=(
  # the agent, for Windows
  [build]="g++-mingw-w64-x86-64-posix cmake ninja-build ca-certificates xz-utils"
  # the simulated world
  [world]="wine wine64 python3 util-linux"
  [printer]="snmpd"
  [screen]="xvfb imagemagick fonts-wine"
  # the native build, and what judges it: format, an independent decoder, the fuzzers, windows on a screen, programs that
  # link the SNMP library, the agent's MSI
  [test]="git g++ clang-format black flake8 shellcheck libtinyxml2-dev googletest openssl tshark clang libclang-rt-14-dev xxd xvfb xdotool imagemagick fonts-wine pkg-config wixl msitools faketime"
  # what is shipped
  [package]="git python3 g++ dpkg-dev file wixl msitools faketime zip osslsigncode"
)
# What lays the world's network out, by the way that this machine allows.
case $(sim/bin/in-namespace --which) in
  loopback) sets[world]+=" libnss-wrapper" ;;
  *) sets[world]+=" iproute2" ;;
esac

fail() {
  echo "$*" >&2
  exit 1
}

missing=()
for name in "$@"; do
  for package in ${sets[$name]-$name}; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
  done
done
if [ ${#missing[@]} -eq 0 ]; then
  echo "Packages: all that are needed are installed"
  exit 0
fi

echo "Packages to install: ${missing[*]}"
command -v apt-get >/dev/null || fail "This takes Debian 12: there is no apt-get to install them with."
as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || fail "Neither root nor sudo is here: let root say 'apt-get install ${missing[*]}' first."
  sudo -n true 2>/dev/null || [ -t 0 ] || fail "sudo wants a password, and nobody is here to give it: let root say 'apt-get install ${missing[*]}' first."
  as_root=(sudo)
fi

log=$(mktemp)
trap 'rm -f "$log"' EXIT
apt() { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get "$@" >"$log" 2>&1; }
why() { grep '^[EW]:' "$log" | head -n 3 || tail -n 3 "$log"; }

apt -qq update || fail "The lists of packages cannot be fetched:" "$(why)"
unknown=()
for package in "${missing[@]}"; do
  apt-cache policy "$package" | grep 'Candidate: [^(]' >/dev/null || unknown+=("$package")
done
[ ${#unknown[@]} -eq 0 ] || fail "This machine's package sources do not have ${unknown[*]}; Debian 12's section main does. $(why)"

# apt looks for room for the archives only.
apt --assume-no --no-install-recommends install "${missing[@]}" || true
read -r size unit < <(sed -nE 's/^After this operation, ([0-9,.]+) ([kMG])B of additional.*/\1 \2/p' "$log" | tr -d ,) || true
case ${unit-} in
  G) tools/check-room.sh /usr "$(awk "BEGIN { print int($size * 1000) }")" "the packages" ;;
  M) tools/check-room.sh /usr "${size%.*}" "the packages" ;;
esac
apt -qq install -y --no-install-recommends "${missing[@]}" || fail "The packages cannot be installed:" "$(why)"
