#!/usr/bin/env bash
# Installs what building, testing and showing the agent needs on Debian 12, and the packages that the arguments name.
# Packages that are there already are left alone.
#   tools/install-packages.sh [PACKAGE...]
set -euo pipefail

packages=(
  # build
  git g++ clang-format g++-mingw-w64-x86-64-posix cmake ninja-build libtinyxml2-dev googletest dpkg-dev ca-certificates
  # the simulated world
  wine wine64 snmpd snmp python3 openssl iproute2 util-linux xvfb xdotool x11-utils imagemagick
  # what judges it: an independent decoder, the fuzzers, and programs that link the SNMP library
  tshark clang libclang-rt-14-dev xxd pkg-config
  "$@"
)

missing=()
for package in "${packages[@]}"; do
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
done
if [ ${#missing[@]} -eq 0 ]; then
  echo "Packages: all ${#packages[@]} are installed"
  exit 0
fi

echo "Packages to install: ${missing[*]}"
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
"${as_root[@]}" apt-get -qq update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends "${missing[@]}" >/dev/null
