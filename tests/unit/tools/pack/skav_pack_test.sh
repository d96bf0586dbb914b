# skav_pack_test.sh SKAV_PACK PROJECT: the command line of skav-pack, its files and its exit statuses.
set -u
pack=$1
project=$2
work=$(mktemp -d) || exit 1
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1

failed=0
fail() { echo "FAILED: $1"; failed=1; }

# expect STATUS PATTERN ARGUMENT...: runs skav-pack and looks for the pattern in what it prints.
expect() {
    local status=$1 pattern=$2 got
    shift 2
    "$pack" "$@" >out 2>&1
    got=$?
    [ $got -eq "$status" ] || fail "skav-pack $* ended with $got, not $status: $(cat out)"
    grep -q -- "$pattern" out || fail "skav-pack $* does not say '$pattern' but: $(cat out)"
}

{ printf 'P6\n# made by hand\n16 8\n255\n'; head -c 384 /dev/zero | tr '\0' '\200'; } >grey.ppm
{ printf 'P6 10 8 255\n'; head -c 240 /dev/zero; } >narrow.ppm
{ printf 'P6 8 12 255\n'; head -c 288 /dev/zero; } >odd.ppm
{ printf 'P6 16 8 255\n'; head -c 100 /dev/zero; } >short.ppm
{ printf 'P6 16 8 65535\n'; head -c 768 /dev/zero; } >deep.ppm
printf 'P6 99999999999999999999 8 255\n' >huge.ppm
printf 'P6 2000 8 255\n' >wide.ppm
printf 'hello\n' >hello.png
: >empty.png
head -c 200 "$project/art/loading/loading.png" >cut.png

expect 0 '16 x 8 pixels, quantiser 20: .* bytes, .* bits per pixel, PSNR' grey.ppm grey.skp
expect 0 'quantiser 7' --quant 7 --lambda 2.5 grey.ppm grey7.skp
[ "$(od -An -tu1 -N3 grey7.skp | tr -s ' ')" = ' 4 2 7' ] || fail "the header of grey7.skp is wrong"
"$pack" --decode grey.skp back.png >out 2>&1 || fail "decoding ended with $?"
[ -s out ] && fail "decoding says: $(cat out)"
expect 0 'PSNR' back.png again.skp
expect 0 'lowest four rows' odd.ppm odd.skp
expect 0 'Usage' --help

expect 0 'PSNR' --source kTinyPicture grey.ppm tiny.cpp
grep -q '^const unsigned char kTinyPicture\[' tiny.cpp || fail "the source does not define kTinyPicture"
bytes=$(sed -n '/^const unsigned char/,/^};/p' tiny.cpp | grep -oE '\b[0-9]+,' | tr -d ',')
[ "$(echo $bytes)" = "$(echo $(od -An -v -tu1 grey.skp))" ] || fail "the source holds other bytes than the file"

expect 1 'No such file' missing.png out.skp
expect 1 'neither a PNG nor a binary PPM' hello.png out.skp
expect 1 'neither a PNG nor a binary PPM' empty.png out.skp
expect 1 '^skav-pack: cut.png: ' cut.png out.skp
expect 1 'directory' . out.skp
expect 1 'width is 10 pixels; it has to be a multiple of 4' narrow.ppm out.skp
expect 1 'ends before the picture does' short.ppm out.skp
expect 1 'only PPM pictures of 8 bits' deep.ppm out.skp
expect 1 'too large' huge.ppm out.skp
expect 1 'at most 1020 x 1020' wide.ppm out.skp
expect 1 'no-such-folder/out.skp: No such file' grey.ppm no-such-folder/out.skp
expect 1 'cut off or damaged' --decode hello.png out.png
expect 1 'fewer than 3 bytes' --decode empty.png out.png
expect 1 'no-such-folder/out.png' --decode grey.skp no-such-folder/out.png
[ -e out.skp ] && fail "a failed run leaves a file"

expect 2 'two files' grey.ppm
expect 2 'two files' a b c
expect 2 'two files'
expect 2 'unknown option' --fast grey.ppm out.skp
expect 2 'quantiser has to be' --quant 0 grey.ppm out.skp
expect 2 'quantiser has to be' --quant 12x grey.ppm out.skp
expect 2 'quantiser has to be' --quant 256 grey.ppm out.skp
expect 2 'lambda has to be' --lambda -1 grey.ppm out.skp
expect 2 'lambda has to be' --lambda nan grey.ppm out.skp
expect 2 'needs a value' grey.ppm out.skp --quant
expect 2 'identifier' --source 2fast grey.ppm out.cpp
expect 2 'no other option' --decode --quant 5 grey.skp out.png

exit $failed
