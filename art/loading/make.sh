#!/bin/sh
# Makes the stored loading picture: renders the scene, packs it and writes the source file that the program embeds.
#
# Needs the packages povray and ttf-bitstream-vera, and the project's own skav-pack, whose path may be given.
#
#     cmake --preset ci && cmake --build --preset ci --target skav-pack
#     art/loading/make.sh [build/ci/tools/pack/skav-pack]
#
# The scene is composed for the proportions in which it is shown, 410 by 256, and rendered into the square texture.
set -eu

here=$(cd "$(dirname "$0")" && pwd)
root=$(cd "$here/../.." && pwd)
pack=${1:-$root/build/ci/tools/pack/skav-pack}
fonts=/usr/share/fonts/truetype/ttf-bitstream-vera

command -v povray >/dev/null || { echo "make.sh: povray is missing: apt-get install povray" >&2; exit 1; }
[ -f "$fonts/VeraMoBd.ttf" ] || {
    echo "make.sh: $fonts/VeraMoBd.ttf is missing: apt-get install ttf-bitstream-vera" >&2
    exit 1
}
[ -x "$pack" ] || { echo "make.sh: $pack is missing: build the target skav-pack first" >&2; exit 1; }

# One thread: the order of the photons depends on the threads, and the picture on their order.
povray "+I$here/loading.pov" "+O$here/loading.png" "+L$fonts" +W256 +H256 -D +AM2 +A0.1 +R3 -J +WT1 +FN8 \
    || { echo "make.sh: rendering failed" >&2; exit 1; }
"$pack" --quant 20 --source kLoadingPicture "$here/loading.png" "$root/src/show/stage/loading_picture_data.cpp"
