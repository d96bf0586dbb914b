#!/bin/bash
# Usage: refresh.sh [BUILD_FOLDER]
# Replaces the reference pictures by what the show draws now. Look at every one that changed before you commit.
set -euo pipefail

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
build=$(cd "${1:-$root/build/ci}" && pwd)

exec "$build/tests/pictures/picture_tests" --refresh "$build/src/hosts/offscreen/skav-export" \
  "$root/data" "$here"
