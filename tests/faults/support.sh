# What the faults share: the program in question, its screen and its sound, and what is expected of it.
#
# A fault is a function fault_NAME, run in a shell of its own with an empty folder $work. It tells what happened
# with `note`, and what should not have with `wrong`; `skip` ends it. What it has started, mounted or limited is
# gone when it ends. Every wait has a limit.

verdict=ok
happened=()
started=()  # processes to end
displays=() # number and process of each X server
mounted=()
groups=()   # control groups
finished=   # once the program in question has ended: its status is $status, and it took $took seconds

note() { happened+=("$*"); }
wrong() {
    note "WRONG: $*"
    verdict='NOT OK'
}
skip() {
    note "$*"
    verdict=skipped
    exit
}

need_root() { [ "$(id -u)" = 0 ] || skip "needs root: $*"; }

# seconds: of a clock that never steps back, with hundredths; the one of the frame log.
seconds() {
    local up rest
    read -r up rest </proc/uptime
    echo "$up"
}

# calculate EXPRESSION: its value. holds CONDITION: whether it is true.
calculate() { awk "BEGIN { printf \"%.2f\", $* }"; }
holds() { awk "BEGIN { exit !($*) }"; }

# eventually SECONDS CMD...: repeats a command until it succeeds; whether it has in that time.
eventually() {
    local end
    end=$(calculate "$(seconds) + $1")
    shift
    until "$@" >/dev/null 2>&1; do
        holds "$(seconds) < $end" || return 1
        sleep 0.02
    done
}

# background CMD...: starts a process that is ended with the fault; it is $!. It gets the signals that bash keeps from
# processes in the background.
background() {
    env --default-signal=INT,QUIT "$@" 3>&- &
    started+=($!)
}

# --- The program in question

# start CMD...: starts it in the current folder. It is process $pid, its output is $work/out and $work/err.
start() {
    background "$@" >"$work/out" 2>"$work/err"
    pid=$!
    finished=
    begun=$(seconds)
}

is_running() { [ -z "$finished" ] && kill -0 "$pid" 2>/dev/null; }
has_ended() { ! is_running; }

# await SECONDS: waits for its end; it is killed where it does not come.
await() {
    if ! eventually "$1" has_ended; then
        wrong "still running after $1 s"
        kill -KILL "$pid"
    fi
    wait "$pid" 2>/dev/null
    status=$?
    took=$(calculate "$(seconds) - $begun")
    finished=yes
}

# expect_end SECONDS STATUS [LINES]: that it ends in time with that status and so many lines on standard error.
expect_end() {
    await "$1"
    [ "$status" = "$2" ] || wrong "status $status, not $2: $(first_line)"
    [ -z "${3:-}" ] || expect_lines "$3"
}

expect_lines() {
    local count
    count=$(wc -l <"$work/err")
    [ "$count" = "$1" ] || wrong "$count lines on standard error, not $1: $(first_line)"
}

# expect_said TEXT: that standard error has it.
expect_said() { grep -qF -- "$1" "$work/err" || wrong "not said: $1; but: $(first_line)"; }

# expect_running SECONDS: that it does not end in that time.
expect_running() {
    eventually "$1" has_ended || return 0
    await 1
    wrong "ended after $took s with status $status: $(first_line)"
}

# end_by SIGNAL: ends it by that signal, and expects it to end at once with the signal's status.
end_by() {
    kill "-$1" "$pid"
    expect_end 2 $((128 + $(kill -l "$1")))
}

first_line() { grep -v '^ *[0-9]*%  show' "$work/err" | head -n 1 | cut -c 1-150; }

# expect_empty FOLDER: that nothing was left there.
expect_empty() { [ -z "$(ls -A "$1")" ] || wrong "left behind: $(ls -A "$1" | head -n 3 | paste -sd ' ')"; }

# --- Screens

# start_server CMD...: starts an X server, which becomes $DISPLAY; it is process $server.
start_server() {
    background "$@" -displayfd 1 -nolisten tcp >"$work/display" 2>"$work/server.err"
    server=$!
    eventually 20 grep -q . "$work/display" || skip "$1 does not start: $(tail -n 1 "$work/server.err")"
    displays+=("$(<"$work/display") $server")
    DISPLAY=:$(<"$work/display")
    export DISPLAY
}
# Without -noreset it would start anew, and refuse a program that comes then, whenever its last client has gone.
virtual_screen() { start_server Xvfb -noreset -screen 0 1024x768x24 "$@"; }

# A real server, whose desktop has 1280x960 and which also knows the mode 1024x768.
screen_with_modes() {
    need_root "only root can start the X server whose modes are switched"
    start_server Xorg -config "$project/tests/whole/xorg.conf" -logfile "$work/xorg.log" \
        -noreset -novtswitch -sharevts
}

mode_is() { [ "$("$screen" mode)" = "$1" ]; }
shows_something() { [ "$("$screen" colors)" -gt 1 ]; }

# expect_moving: that the picture on the screen changes.
expect_moving() {
    local before
    before=$("$screen" sum)
    eventually 5 differs "$before" || wrong "the picture stands still"
}
differs() { [ "$("$screen" sum)" != "$1" ]; }

# --- Sound. A device plays nothing and can be recorded.

# No server and no device but what is started here.
no_sound() {
    mkdir -p "$work/home"
    export HOME=$work/home XDG_RUNTIME_DIR=$work/home XDG_CONFIG_HOME=$work/home PULSE_RUNTIME_PATH=$work/home
    export PULSE_STATE_PATH=$work/home PULSE_CONFIG_PATH=$work/home PULSE_COOKIE=$work/home/cookie
    export PULSE_SERVER=unix:$work/pulse ALSA_CONFIG_PATH=$work/none JACK_NO_START_SERVER=1
}

# A device that while nobody plays does not render two seconds in advance, and so plays at once what comes.
null_sink='module-null-sink rate=44100 channels=2 sink_name=nothing norewinds=1'

# The sound server is process $pulse.
start_sound() {
    no_sound
    background pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no --disable-shm=yes --system=false \
        -L "$null_sink" \
        -L "module-native-protocol-unix socket=$work/pulse auth-anonymous=1 auth-cookie-enabled=0" \
        >"$work/pulse.log" 2>&1
    pulse=$!
    eventually 10 pactl info || skip "the sound server does not start: $(tail -n 1 "$work/pulse.log")"
}

# hears SECONDS: whether a tenth of a second of sound is played in that time.
hears() {
    timeout "$1" parec --device=nothing.monitor --raw --format=s16le --rate=8000 --channels=1 --latency-msec=20 |
        stdbuf -oL od -An -v -td2 -w2 | awk '$1 > 50 || $1 < -50 { if (++loud == 800) exit } END { exit loud < 800 }'
}

# expect_heard SECONDS: that sound is played within that time; half a second more is for the recorder's own start.
expect_heard() {
    local from
    from=$(seconds)
    if hears "$(calculate "$1 + 0.5")"; then
        note "heard within $(calculate "$(seconds) - $from") s"
    else
        wrong "not heard within $1 s"
    fi
}
expect_silence() { ! hears "$1" || wrong "heard"; }

# --- Positions: what the show reads of its clock, by the program skav-logged

# start_logged [CMD...]: starts skav-logged, by the given command, and waits for its music.
start_logged() {
    export FRAME_LOG=$work/frames
    start "$@" "$logged"
    eventually 20 grep -qs ^frame "$FRAME_LOG" || wrong "no music: $(first_line)"
}

# position: that of the last frame in seconds of show time.
position() { awk "$read_frames"' END { print at }' "$work/frames"; }

read_frames='
    $1 == "play" { ++plays; offset = plays == 2 ? 74.3 : 0; if (plays == 1) first = $3; fresh = 1 }
    $1 == "frame" { at = $4 / 1000 + offset; ++frames }'

# expect_positions LAG: that the position never fell or jumped, and has lost so many seconds to real time since it
# first moved, to half a second. A frame that was itself late is allowed for, also the one that switches the music: the
# second file begins when it is called for.
expect_positions() {
    local fall jump start lag frames before
    read -r fall jump start lag frames before < <(awk "$read_frames"'
        $1 == "play" && plays == 2 { lost = lag; moved = $3 - offset }
        $1 == "frame" {
            if (!moved && at > 0) { moved = $3 - at; start = moved - first }
            if (!fresh) {
                if (last - at > fall) fall = last - at
                if (at - last - 4 * ($3 - before) - 0.03 > jump) jump = at - last - ($3 - before)
            }
            fresh = 0; last = at; before = $2; lag = lost + $3 - moved - at
        }
        END {
            printf "%.2f %.2f %.2f %.2f %d", fall, jump, start, lag, frames
            if (plays == 2) printf " (%.2f s before the second file)", lost
            print ""
        }' "$work/frames")
    holds "$fall == 0" || wrong "the position fell by $fall s"
    holds "$jump == 0" || wrong "the position jumped by $jump s"
    holds "$start <= 2.2" || wrong "the position first moved after $start s"
    holds "$lag >= $1 - 0.5 && $lag <= $1 + 0.5" || wrong "lost $lag s to real time, not $1"
    note "$frames frames, the position started after $start s and lost $lag s from then on${before:+ $before}"
}

# --- What a fault is made of

# copy_data: a folder $work/data with the show's files.
copy_data() {
    rm -rf "$work/data"
    cp -rL "$project/data" "$work/data"
}

# small_disk SIZE: a file system of that size at $work/disk.
small_disk() {
    need_root "a full disk is a small file system mounted for it"
    mkdir -p "$work/disk"
    mount -t tmpfs -o "size=$1" tmpfs "$work/disk" 2>/dev/null || skip "cannot mount a small file system"
    mounted+=("$work/disk")
}

# limit_processor PROCESS PERMILLE: gives a process that share of one processor from here on, by a control group.
limit_processor() {
    local group period=200000
    need_root "the processor is limited by a control group"
    if [ -e /sys/fs/cgroup/cpu/cpu.cfs_quota_us ]; then
        group=/sys/fs/cgroup/cpu/skav-fault-$$
        mkdir -p "$group" && echo $period >"$group/cpu.cfs_period_us" &&
            echo $((period * $2 / 1000)) >"$group/cpu.cfs_quota_us" || skip "control groups cannot be written"
    else
        group=/sys/fs/cgroup/skav-fault-$$
        mkdir -p "$group" 2>/dev/null && echo "$((period * $2 / 1000)) $period" >"$group/cpu.max" ||
            skip "control groups cannot be written"
    fi 2>/dev/null
    groups+=("$group")
    echo "$1" >"$group/cgroup.procs"
}

# --- The end of a fault

# An X server that is killed leaves its lock and its socket.
remove_display() {
    local lock=/tmp/.X$1-lock
    [ "$(tr -d ' ' <"$lock")" = "$2" ] && rm -f "$lock" "/tmp/.X11-unix/X$1"
}

clean_up() {
    local item
    for item in "${started[@]}"; do
        kill -CONT "$item"
        kill -KILL "$item"
    done
    wait
    for item in "${displays[@]}"; do remove_display $item; done
    for item in "${groups[@]}"; do eventually 5 rmdir "$item"; done
    for item in "${mounted[@]}"; do umount "$item"; done
    rm -rf "$work"
} 2>/dev/null
