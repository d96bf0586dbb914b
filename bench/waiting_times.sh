#!/usr/bin/env bash
# Usage: bench/waiting_times.sh [NAME...]
# How long a person waits for what the project offers, as a table: each figure from a fresh clone of this checkout's
# last commit. The packages must be installed, and the machine idle. Without names everything is measured (about an
# hour); the names are: checkout build picture video export test quick.
set -euo pipefail
cd -P "$(dirname "$(readlink -f "$0")")/.."

work=$(mktemp -d)
server=
show=
end() { # also those that are interrupted leave nothing behind
    [ -z "$show" ] || kill -- -"$show" || true
    [ -z "$server" ] || kill "$server" || true
    rm -rf "$work"
}
trap end EXIT
trap 'exit 1' INT TERM
export CCACHE_DISABLE=1 LC_ALL=C.UTF-8
unset DISPLAY CMAKE_CXX_COMPILER_LAUNCHER CMAKE_C_COMPILER_LAUNCHER

row() { printf '%-58s %12s  %s\n' "$@"; }
clone() { git clone --quiet --no-hardlinks . "$work/$1"; }

# Runs a command with its output in $work/log, and sets `seconds`, `cpu` (of it and its children, seconds) and `share`
# (of all processors, per cent).
measure() {
    local times
    TIMEFORMAT='%R %U %S'
    times=$({ time "$@" >"$work/log" 2>&1 </dev/null; } 2>&1) || { cat "$work/log" >&2; return 1; }
    read -r seconds cpu share < <(awk -v n="$(nproc)" '{printf "%.0f %.0f %.0f\n", $1, $2 + $3, ($2 + $3) / $1 / n * 100}' \
        <<<"$times")
}

measure_checkout() {
    clone checkout
    row "checkout without .git" "$(du -sm --exclude=.git "$work/checkout" | cut -f1) MB" ""
    row "history (.git)" "$(du -sm "$work/checkout/.git" | cut -f1) MB" ""
}

measure_build() {
    clone build
    cd "$work/build"
    measure bash -c 'cmake --preset release && cmake --build --preset release --target skav'
    row "building the show" "$seconds s" "$cpu s of processor"
    measure bash -c 'cmake --build --preset release'
    row "building the exporter besides" "$seconds s" "$cpu s of processor"
    cd - >/dev/null
}

# From `git clone` to the first picture that differs from the empty screen.
measure_picture() {
    local display number blank status=0
    exec {number}< <(exec Xvfb -displayfd 1 -screen 0 1280x1024x24 -nolisten tcp -fbdir "$work" 2>/dev/null)
    server=$!
    read -r -t 30 display <&"$number"
    screen() { cksum <"$work/Xvfb_screen0"; }
    blank=$(screen)
    SECONDS=0
    clone picture
    # With a process group of its own, which `end` ends.
    DISPLAY=:$display setsid "$work/picture/run" --window </dev/null >"$work/log" 2>&1 &
    show=$!
    while [ "$(screen)" = "$blank" ]; do
        kill -0 "$show" 2>/dev/null || { cat "$work/log" >&2; return 1; }
        sleep 0.2
    done
    row "git clone to the first picture (./run --window)" "$SECONDS s" ""
    kill "$show"
    wait "$show" || status=$?
    show=
    kill "$server"
    server=
    exec {number}<&-
    [ $status = 143 ] || { cat "$work/log" >&2; return 1; } # it played until the signal
}

measure_video() {
    clone video
    cd "$work/video"
    cmake --preset release >/dev/null && cmake --build --preset release --target skav-export >/dev/null
    measure ./run
    row "./run without a display, built before" "$seconds s" "$cpu s of processor, $((100 - share)) % of all idle"
    cd - >/dev/null
}

measure_export() {
    local own own_cpu
    clone export
    cd "$work/export"
    cmake --preset release -DSKAV_BENCHMARKS=ON >/dev/null
    cmake --build --preset release --target skav-export export_benchmark >/dev/null
    measure build/release/src/hosts/offscreen/skav-export --quiet --data data --language en -o "$work/show.mp4"
    row "skav-export: the whole show at 60 frames a second" "$seconds s" \
        "$cpu s of processor, $((100 - share)) % of all idle"
    # What is neither GL's nor the encoder's, of the whole: microseconds for each of the 162 * 60 pictures.
    build/release/bench/export_benchmark --benchmark_format=csv --benchmark_repetitions=9 2>/dev/null |
        awk -F, -v cpu="$cpu" '
            /process_time_median/ { own += $4 * 162 * 60 / 1e6 }
            END { printf "%.1f %.0f\n", own / cpu * 100, own }' >"$work/own"
    read -r own own_cpu <"$work/own"
    row "  of it reading back and converting" "$own %" "$own_cpu s of processor"
    cd - >/dev/null
}

measure_test() {
    clone test
    measure "$work/test/test"
    row "./test" "$seconds s" "$share % of the processors"
}

measure_quick() {
    [ -d "$work/test" ] || { clone test; measure "$work/test/test" --quick; }
    measure "$work/test/test" --quick
    row "./test --quick, built before" "$seconds s" "$share % of the processors"
}

[ $# != 0 ] || set -- checkout build picture video export test quick
row figure value besides
for name; do "measure_$name"; done
