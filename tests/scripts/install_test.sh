# install_test.sh PROJECT BUILD: installs a build into an empty folder, and runs the programs from there.
set -u
project=$1
build=$2
. "$project/tests/faults/support.sh"
work=$(mktemp -d) || exit 1
trap clean_up EXIT

fail() {
    echo "FAILED: $*"
    exit 1
}
skip() { fail "$*"; }

log=$(DESTDIR=$work/root cmake --install "$build" --prefix /opt/skav --strip 2>&1) || fail "$log"
cd "$work/root/opt/skav" || fail "not in the prefix: $log"

expected="bin/skav
bin/skav-export
share/applications/skav.desktop
share/man/man1/skav-export.1
share/man/man6/skav.6
share/metainfo/skav.metainfo.xml
share/skav/Arial
share/skav/Vera.ttf
share/skav/licenses/Arial.LICENSE
share/skav/licenses/Vera.LICENSE
share/skav/licenses/music.LICENSE
share/skav/licenses/skav.LICENSE
share/skav/zev.mp3
share/skav/zev_voc.mp3
$(printf 'share/icons/hicolor/%s/apps/skav.png\n' 16x16 24x24 32x32 48x48 64x64 128x128 256x256)"
difference=$(diff <(sort <<<"$expected") <(find . -type f | cut -c 3- | sort)) || fail "not what is to be installed: $difference"

# Readable for everybody; programs and folders can be entered.
wrong=$(find . ! -perm -a+r -o \( -type d -o -path './bin/*' \) ! -perm -a+x) && [ -z "$wrong" ] || fail "modes of $wrong"

for icon in share/icons/hicolor/*/apps/skav.png; do
    size=$(od -An -j 16 -N 8 -t u4 --endian=big "$icon" | xargs printf '%sx%s')
    [ "$icon" = "share/icons/hicolor/$size/apps/skav.png" ] || fail "$icon has $size"
done

# The show has no domain, so its identifier cannot be made of one.
log=$(appstreamcli validate --no-net --override cid-desktopapp-is-not-rdns=info share/metainfo/skav.metainfo.xml) ||
    fail "$log"

bin/skav-export --quiet --data share/skav --language en --still 14 -o "$work/still.png" || fail "skav-export"
"$build/src/hosts/offscreen/skav-export" --quiet --data "$project/data" --language en --still 14 -o "$work/same.png"
cmp "$work/still.png" "$work/same.png" || fail "another still"

no_sound
screen=$build/tests/faults/screen
virtual_screen
command=$(sed -n 's/^Exec=//p' share/applications/skav.desktop)
start "$PWD/bin/"$command --data share/skav
eventually 60 shows_something || fail "no picture: $(first_line)"
kill "$pid"
await 30
[ "$verdict $status" = 'ok 143' ] || fail "status $status: ${happened[*]-} $(first_line)"
[ ! -s "$work/err" ] || fail "$(cat "$work/err")"
