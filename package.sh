#!/usr/bin/env bash
# Makes what is shipped into dist/packages/, from the version in CMakeLists.txt: the agent's MSI and archive, the SNMP
# library's archives and Debian package, a bill of materials and checksums. One commit gives the same bytes each time.
#   ./package.sh                               unsigned
#   ./package.sh --sign CERT KEY [TSA_URL]     programs, libraries and the MSI signed, with PEM files; the signatures
#                                              countersigned by a time-stamping server, or they end with the certificate
set -euo pipefail
umask 022
export LC_ALL=C TZ=UTC
case ${1-}/$# in
  /0) ;;
  --sign/3 | --sign/4)
    if ! certificate=$(readlink -e "$2") || ! key=$(readlink -e "$3"); then
      echo "There is no file $2 or no file $3." >&2
      exit 2
    fi
    time_stamp=(${4:+-ts "$4"})
    ;;
  *)
    sed -n '2,/^[^#]/s/^# \?//p' "$0" >&2
    exit 2
    ;;
esac
cd "$(dirname "$0")"

say() { printf '\n== %s\n' "$*"; }
sign() { # FILE
  osslsigncode sign -certs "$certificate" -key "$key" -h sha256 -n TOVAgent -time "$SOURCE_DATE_EPOCH" "${time_stamp[@]}" \
    -in "$1" -out build/package/signed >/dev/null
  mv build/package/signed "$1"
}

say "What it takes"
tools/check-room.sh . 1000 "the packages and what they are made from"
tools/install-packages.sh build package
tools/fetch-tinyxml2.sh
# All times in the packages are that of the commit.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -c safe.directory="$PWD" log -1 --format=%ct)}
export SOURCE_DATE_EPOCH

say "Programs and libraries"
tools/build.sh windows -DZT_BUILD_TESTS=OFF ZT ztsnmp ztsnmp_static agreement_sample
tools/build.sh linux
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:[A-Z]*=//p' build/windows/CMakeCache.txt)
packages=$PWD/dist/packages
agent=ZT-$version-x64
windows=ztsnmp-$version-windows-x64
linux=ztsnmp-$version-linux-x64
rm -rf build/package "$packages"
mkdir -p build/package "$packages"
install_into() { cmake --install "build/$1" --component "$2" --prefix "build/package/$3" >/dev/null; }
install_into windows agent "$agent"
install_into windows ztsnmp "$windows"
install_into linux ztsnmp "$linux"

# What is linked into the Windows programs wants its license beside them.
{
  printf '==== TOVAgent\n\n' && cat LICENSE
  printf '\n==== TinyXML-2\n\n' && cat build/deps/tinyxml2/LICENSE.txt
  printf '\n==== mingw-w64\n\n' && cat /usr/share/doc/mingw-w64-common/copyright
  printf "\n==== The compiler's runtime\n\n" && cat /usr/share/doc/gcc-mingw-w64-x86-64-posix-runtime/copyright
} >build/package/LICENSES.txt
cp build/package/LICENSES.txt "build/package/$agent/"
cp build/package/LICENSES.txt "build/package/$windows/"
cp LICENSE "build/package/$linux/"
cp -r agreement-sample docs "build/package/$agent/"
rm "build/package/$agent/agreement-sample/CMakeLists.txt" # It belongs to this tree.
mkdir "build/package/$agent/policies"
find deploy -name '*.adm[xl]' -printf '%P\0' | xargs -0r -I{} install -Dm644 deploy/{} "build/package/$agent/policies/{}"

if [ $# -gt 0 ]; then
  say "Signatures"
  while IFS= read -r file; do
    sign "$file"
    echo "${file#build/package/}"
  done < <(find build/package -name '*.exe' -o -name '*.dll' | sort)
fi

say "Packages"
find build/package -exec touch --no-dereference --date="@$SOURCE_DATE_EPOCH" {} +
(
  cd build/package
  for folder in "$agent" "$windows"; do
    find "$folder" | sort | zip -qX@ "$packages/$folder.zip"
  done
  tar --create --sort=name --owner=0 --group=0 --numeric-owner "$linux" | gzip --no-name >"$packages/$linux.tar.gz"
)
deploy/make_msi.py "$version" "build/package/$agent/"{bin/ZT.exe,LICENSES.txt} "$packages/$agent.msi"
[ $# -eq 0 ] || sign "$packages/$agent.msi"
cpack --config build/linux/CPackConfig.cmake -B build/package/deb >build/package/cpack.log 2>&1 || {
  cat build/package/cpack.log
  exit 1
}
mv build/package/deb/*.deb "$packages/"
tinyxml2=$(sed -nE 's/^#define TINYXML2_(MAJOR|MINOR|PATCH)_VERSION +([0-9]+).*/\2/p' build/deps/tinyxml2/tinyxml2.h | paste -sd.)
deploy/sbom.py "$version" "$packages" "$tinyxml2" >"$packages/TOVAgent-$version.spdx.json"
(cd "$packages" && sha256sum -- * >"$OLDPWD/build/package/SHA256SUMS" && mv "$OLDPWD/build/package/SHA256SUMS" .)
(cd "$packages" && ls -l)
