#!/usr/bin/env bash
# Usage: bench/page_frame_times.sh
# How long the page computes for a frame of each scene, without the driver: a table, in milliseconds. Sets up and builds
# what ./page builds, and runs it in Node. The machine should be idle; on a busy one measure two builds in turns.
set -euo pipefail
cd -P "$(dirname "$(readlink -f "$0")")/.."

./page --build
. packaging/setup.sh
build page page_frame_times
cd data
echo e | node ../build/page/bench/page_frame_times.js | sed -n '/^scene/,$p'
