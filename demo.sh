#!/usr/bin/env bash
# Shows the agent at its main job, in a simulated printing world: a print queue, a printer that answers by SNMP, a report
# server, and the real ZT.exe, started three times. Exits with 0 when everything was seen.
#   ./demo.sh              all of it
#   ./demo.sh --usb        the printer at a USB port
#   ./demo.sh --wsd        the queue on a port for Web Services for Devices
#   ./demo.sh --virtual    both jobs with canned printer data: no SNMP agent, no network of its own
#   ./demo.sh --protection product protection instead: the user agrees or not, the printer is switched, it is reported
#   ./demo.sh --dialog     the test dialog instead: its pictures go to build/dialog/, its diagnosis to the screen
set -euo pipefail
cd "$(dirname "$0")"

if [[ $# -gt 1 || ! ${1:-} =~ ^(--usb|--wsd|--virtual|--protection|--dialog)?$ ]]; then
  echo "usage: ./demo.sh [--usb | --wsd | --virtual | --protection | --dialog]" >&2
  exit 2
fi

say() { printf '\n== %s\n' "$*"; }

say "What it takes"
sets=(build world)
ports=()
case ${1:-} in
  --usb | --virtual) ;;
  --dialog) sets+=(screen) ports+=(udp/161) ;;
  *) sets+=(printer) ports+=(udp/161) ;;
esac
tools/check-room.sh . 1000 "the agent and a Windows to show it in"
tools/install-packages.sh "${sets[@]}"
ZT_WORLD=$(sim/bin/in-namespace --which)
export ZT_WORLD
[ "${1:-}" = --virtual ] || sim/bin/in-namespace --check "${ports[@]}"
tools/fetch-tinyxml2.sh

say "The agent, built into dist/"
tools/build.sh windows -DZT_BUILD_TESTS=OFF ZT ztsnmp ztsnmp_static agreement_sample sim_winspool sim_discovery sim_usbprint sim_agreement sim_ui
rm -rf dist
cmake --install build/windows >/dev/null
ls -l dist/bin/ZT.exe

world=(sim/bin/in-namespace)
[ "${1:-}" != --virtual ] || world=()
case ${1:-} in
  --protection) exec "${world[@]}" python3 -m sim.demo_protection ;;
  --dialog) exec "${world[@]}" python3 -m sim.dialog_tour ;;
esac
exec "${world[@]}" python3 -m sim.demo "$@"
