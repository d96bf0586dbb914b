#!/bin/bash
# Usage: export_frames.sh [BUILD_FOLDER] [skav-export options, e.g. --scale 2]
# How fast skav-export draws: frames per second of two seconds of each scene without encoding, and those two
# seconds against real time at 60 frames a second.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/ci}
shift || true
program=$build/src/hosts/offscreen/skav-export

printf '%-16s %10s %10s\n' scene frames/s 'real time'
while read -r from to scene; do
  "$program" --data "$root/data" --language en --from "$from" --to "$to" "$@" -o - --format rgb 2>&1 >/dev/null |
    sed -n 's/.*(\([0-9.]*\) per second)/\1/p' |
    awk -v scene="$scene" '{ printf "%-16s %10.1f %9.2fx\n", scene, $1, $1 / 60 }'
done <<'SCENES'
2 4 title
20 22 greetings
47 49 gyroscope
58 60 cross
69 71 text screen
80 82 scroller, sheet
110 112 scroller, layer
158 160 credits
SCENES
