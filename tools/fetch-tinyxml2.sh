#!/usr/bin/env bash
# Lays out TinyXML-2's sources for the Windows build: Debian's own source package, from the archive that this
# machine's apt already uses and trusts. The system's source lists are not touched.
set -euo pipefail
cd "$(dirname "$0")/.."
target=build/deps/tinyxml2
if [ -f "$target/tinyxml2.cpp" ]; then
  echo "TinyXML-2 sources: $target (present)"
  exit 0
fi

private=build/deps/apt
mkdir -p "$private/lists/partial" "$private/download"
# apt drops to the user _apt for downloads where it can; these folders belong to whoever builds.
apt_private=(-o Dir::Etc::SourceList="$PWD/$private/sources.list" -o Dir::Etc::SourceParts=- -o Dir::State::Lists="$PWD/$private/lists" -o APT::Sandbox::User="$(id -un)" -o Dir::Cache="$PWD/$private" -o Debug::NoLocking=1)
keyring=/usr/share/keyrings/debian-archive-keyring.gpg
list_sources() {
  # shellcheck disable=SC2016 # apt's own variables
  apt-get indextargets --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian' |
    awk '$3 == "main"' | sort -u | sed "s|^|deb-src [signed-by=$keyring] |" >"$private/sources.list"
  [ -s "$private/sources.list" ]
}
# Images of containers are often made without apt's lists.
if ! list_sources; then
  as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo -n)
  "${as_root[@]}" apt-get -qq update >/dev/null 2>&1 || true
  list_sources || {
    echo "apt has no lists of Debian's packages: let root say 'apt-get update' first." >&2
    exit 1
  }
fi
mkdir -p "$private/archives/partial"
{
  apt-get "${apt_private[@]}" -qq update
  (cd "$private/download" && apt-get "${apt_private[@]}" -qq --download-only source tinyxml2)
  mkdir -p "$target.new"
  tar -xf "$private"/download/tinyxml2_*.orig.tar.* -C "$target.new" --strip-components=1
} >"$private/log" 2>&1 || {
  echo "TinyXML-2's sources cannot be had from Debian's archive: $(tail -n 1 "$private/log")" >&2
  exit 1
}
mv "$target.new" "$target"
rm -rf "$private"
echo "TinyXML-2 sources: $target"
