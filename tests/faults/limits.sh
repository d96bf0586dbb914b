# Limits of the machine and of the process: memory, descriptors, folders, disks, time, and what the start hands over.

still() { start "$@" "$export_program" -q --force --language en --still 14 -o "$work/still.png"; }

# limited LIMIT CMD...: starts a program under that limit of ulimit.
limited() { start sh -c "ulimit $1; shift; exec \"\$@\"" sh "$@"; }

# gives_up WHAT: that the program, which has ended, has done so with an error.
gives_up() {
    case $status in
    1 | 127) ;; # 127: not even its libraries could be loaded
    134 | 139) crashes+=" $1" ;;
    *) wrong "status $status with $1: $(first_line)" ;;
    esac
}

# Every amount of memory is enough, or is an error that leaves nothing behind. The software renderer crashes where it
# gets none; that ends skav, but must not make it hang.
fault_little_memory() {
    local size least= crashes=
    virtual_screen
    no_sound
    mkdir "$work/made"
    for size in 40 60 80 100 150 200 250 300 400 600 1000 2000; do
        limited "-v ${size}000" "$export_program" -q --force --language en --still 14 -o "$work/made/a.png"
        await 20
        if [ "$status" = 0 ]; then
            [ -s "$work/made/a.png" ] || wrong "no picture in $size MB, but status 0"
            : "${least:=$size}"
        else
            [ "$status" = 1 ] || [ "$status" = 127 ] || wrong "skav-export: status $status in $size MB: $(first_line)"
            expect_empty "$work/made"
        fi
        limited "-v ${size}000" "$skav"
        if eventually 3 has_ended; then
            await 1
            gives_up "$size"
        else
            end_by TERM
        fi
    done
    note "a still is made from $least MB on, else status 1; skav ends at once"
    [ -z "$crashes" ] || note "by a crash of the renderer with$crashes MB"
}

# The same with descriptors; libpulse gives up where it gets none.
fault_few_descriptors() {
    local count least= crashes=
    virtual_screen
    start_sound
    for count in 3 4 5 6 7 8 9 10 12 14 16 18 20 24 28 32 48; do
        limited "-n $count" "$export_program" -q --force --language en --still 14 -o "$work/still.png"
        await 10
        case $status in
        0) : "${least:=$count}" ;;
        1 | 127) ;;
        *) wrong "skav-export: status $status with $count descriptors: $(first_line)" ;;
        esac
        limited "-n $count" "$skav"
        if eventually 2 has_ended; then
            await 1
            gives_up "$count"
        else
            end_by TERM
        fi
    done
    note "a still is made with $least descriptors or more, else status 1; skav ends at once or plays"
    [ -z "$crashes" ] || note "libpulse ends it with$crashes"
}

fault_foreign_folder() {
    virtual_screen
    start_sound
    cd / || exit
    start "$skav" --strict
    expect_end 2 1 1
    start "$skav"
    expect_running 2
    expect_lines 1
    end_by TERM
    still
    expect_end 2 1 2
    start "$export_program" -q --data "$project/data" --language en --still 14 -o "$work/a.png"
    expect_end 5 0 0
    note "one line says where the files were looked for; --data finds them"
}

fault_read_only_folder() {
    need_root "the folder is mounted read-only"
    virtual_screen
    start_sound
    mkdir "$work/data"
    mount --bind "$project/data" "$work/data" && mounted+=("$work/data") &&
        mount -o remount,ro,bind "$work/data" || skip "cannot mount"
    cd "$work/data" || exit
    start "$skav" --strict
    expect_running 2
    expect_lines 0
    end_by TERM
    still
    expect_end 5 0 0
    start "$export_program" -o a.mp4
    expect_end 5 1 1
    expect_said 'Read-only file system'
    cd "$project/data" || exit
    note "both work in it; an output there is one line"
}

fault_deleted_folder() {
    virtual_screen
    start_sound
    mkdir "$work/gone"
    cd "$work/gone" || exit
    rmdir "$work/gone"
    start "$skav" --strict
    expect_end 2 1 1
    start "$skav"
    expect_running 2
    end_by TERM
    start "$export_program" -o a.mp4
    expect_end 2 1 1
    start "$export_program" --data "$project/data" -q --language en --still 14 -o "$work/a.png"
    expect_end 5 0 0
    note "skav says where it looked; skav-export refuses a relative output in one line"
}

# full ARGUMENTS...: that an export there fails in one line and leaves nothing.
full() {
    start "$export_program" -q --language en "$@"
    expect_end 60 1 1
    expect_said 'No space left'
    expect_empty "$work/disk"
}

fault_disk_full() {
    small_disk 64k
    cd "$project/data" || exit
    local kind
    for kind in mp4 mkv mov; do full --fps 10 --from 10 --to 20 --crf 1 -o "$work/disk/a.$kind"; done
    full --still 14 -o "$work/disk/a.png"
    full --sheet "$work/disk/a.png"
    mkdir "$work/disk/frames"
    full_folder --fps 10 --from 10 --to 20 --frames "$work/disk/frames"
    full_folder --still 1 --still 14 --still 20 -o "$work/disk/frames/"
    rm -r "$work/disk/frames"
    start sh -c "\"\$0\" -q --language en --fps 10 -o - >\"$work/disk/a.y4m\"" "$export_program"
    expect_end 60 1 1
    rm "$work/disk/a.y4m"
    dd if=/dev/zero of="$work/disk/full" bs=1k count=64 # from the start
    start "$export_program" -q --language en --still 14 -o "$work/disk/a.png"
    expect_end 10 1 1
    note "one line with status 1 for mp4, mkv, mov, picture, storyboard, pictures, frames and stream"
    note "no file is left half written"
}

# Pictures in a folder are whole or not there.
full_folder() {
    local file
    start "$export_program" -q --language en "$@"
    expect_end 60 1 1
    expect_said 'No space left'
    for file in "$work/disk/frames/"*; do
        [ ! -e "$file" ] || ffmpeg -v error -i "$file" -f null - || wrong "$file is not whole"
    done
    rm -rf "$work/disk/frames/"*
}

# The processor is limited by a control group; the end has to come at its time.
fault_frame_a_second() {
    local from
    no_sound
    virtual_screen
    start_logged
    limit_processor "$pid" 15
    sleep 20
    expect_positions 0
    kill -KILL "$pid"
    await 1
    export TEST_CLOCK_START_MS=145000 TEST_CLOCK_STARTED=$work/playing
    start "$on_clock"
    eventually 10 test -e "$work/playing" || wrong "no music"
    from=$(seconds)
    limit_processor "$pid" 15
    expect_end 25 0 0
    took=$(calculate "$(seconds) - $from")
    holds "$took >= 16.5 && $took <= 20" || wrong "17 s took $took s"
    note "the last 17 s take $took s"
}

fault_closed_descriptors() {
    local closed
    virtual_screen
    start_sound
    for closed in '<&-' '>&-' '2>&-' '<&- >&-' '<&- 2>&-' '>&- 2>&-' '<&- >&- 2>&-'; do
        still sh -c "exec \"\$@\" $closed" sh
        expect_end 5 0
        start sh -c "exec \"\$@\" $closed" sh "$skav"
        sleep 1
        expect_moving
        end_by TERM
    done
    note "both work without any of them"
}

fault_nohup() {
    virtual_screen
    start_sound
    start nohup "$skav"
    eventually 5 shows_something || wrong "no picture"
    kill -HUP "$pid"
    expect_running 1
    end_by TERM
    start nohup "$export_program" --language en --fps 1 --to 60 -o "$work/a.mp4"
    sleep 1
    kill -HUP "$pid"
    expect_end 60 0
    ffmpeg -v error -i "$work/a.mp4" -f null - || wrong "the video is not whole"
    note "SIGHUP ends neither; the video is whole"
}

# A reader that has stopped reading.
fault_stalled_reader() {
    local signal
    mkfifo "$work/fifo" "$work/fifo.png"
    sleep 1000 3<>"$work/fifo" &
    started+=($!)
    for signal in INT TERM HUP QUIT; do
        start sh -c "exec \"\$@\" >\"$work/fifo\"" sh "$export_program" -q --language en -o -
        sleep 2
        end_by "$signal"
        expect_lines 1
    done
    start "$export_program" -q --language en --sheet "$work/fifo.png"
    expect_end 2 1 1
    note "each signal ends it at once, with one line; a FIFO as the output's name is refused"
}

fault_two_exports() {
    local first
    start "$export_program" -q --force --language en --fps 1 --to 60 -o "$work/a.mp4"
    first=$pid
    start "$export_program" -q --force --language en --fps 1 --to 60 -o "$work/a.mp4"
    expect_end 60 0 0
    pid=$first finished=
    expect_end 60 0 0
    ffmpeg -v error -i "$work/a.mp4" -f null - || wrong "the video is not whole"
    rm -f "$work/"{out,err,a.mp4}
    expect_empty "$work"
    start "$export_program" -q --language en --fps 1 -o "$work/a.mp4"
    sleep 1
    kill -KILL "$pid"
    await 2
    rm -f "$work/"{out,err}
    expect_empty "$work"
    note "both succeed, and the video is whole; nothing is left after SIGKILL"
}
