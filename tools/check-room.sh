#!/usr/bin/env bash
# Fails, with a sentence, where a folder has less room than so many megabytes.
#   tools/check-room.sh FOLDER MEGABYTES WHAT_FOR
set -euo pipefail
free=$(df --output=avail -BM "$1" | tail -n 1 | tr -dc 0-9)
[ "$free" -ge "$2" ] || {
  echo "Too little room: $3 need $2 MB, and $(readlink -f "$1") has $free MB left." >&2
  exit 1
}
