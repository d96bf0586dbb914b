# Music and fonts that cannot be used, or change while they are played.

# spoil HOW FILE: puts such a file there.
spoil() {
    local size
    size=$(stat -c %s "$2")
    case $1 in
    missing) rm "$2" ;;
    empty) : >"$2" ;;
    folder) rm "$2" && mkdir "$2" ;;
    cut) truncate -s $((size / 3)) "$2" ;;
    garbage) head -c "$size" /dev/urandom >"$2" ;;
    other) ffmpeg -v error -f lavfi -i sine=duration=100 -y "$work/other.wav" && mv "$work/other.wav" "$2" ;;
    hole) dd if=/dev/zero of="$2" bs=1000 seek=100 count=200 conv=notrunc ;;
    rate) ffmpeg -v error -i "$2" -ar 48000 -y "$work/rate.mp3" && mv "$work/rate.mp3" "$2" ;;
    esac
}

# refuses FILE HOW: that both programs name a file spoilt like that, and that only `skav` goes on, without --strict.
refuses() {
    copy_data
    spoil "$2" "$work/data/$1"
    cd "$work/data" || exit
    start "$skav" --strict
    expect_end 3 1 1
    expect_said "skav: $1: $work/data/$1 "
    rm -f "$work/out.png"
    start "$export_program" --language en --still 14 -o "$work/out.png"
    expect_end 3 1 2
    expect_said "skav-export: $1: $work/data/$1 "
    [ ! -e "$work/out.png" ] || wrong "a picture was made"
    start "$skav"
    eventually 3 shows_something || grep -q zev.mp3 <<<"$1" || wrong "no picture with $1 $2"
    expect_running 1
    expect_lines 1
    end_by TERM
}

# accepts FILE HOW LINES: that both programs do with such a file, and say so many lines.
accepts() {
    local lines=$3
    copy_data
    spoil "$2" "$work/data/$1"
    cd "$work/data" || exit
    start "$skav" --strict
    expect_running 2
    expect_lines "$lines"
    end_by TERM
    start "$export_program" -q --force --language en --still 14 -o "$work/out.png"
    expect_end 5 0 "$lines"
}

fault_bad_music() {
    local file how
    start_sound
    virtual_screen
    for file in zev.mp3 zev_voc.mp3; do
        for how in missing empty folder cut garbage other hole; do refuses "$file" "$how"; done
        accepts "$file" rate 0
    done
    note "each of 7 faults of each file is one line; --strict and the exporter end with 1, skav goes on"
    note "48 kHz is played"
}

fault_bad_fonts() {
    local how
    start_sound
    virtual_screen
    for how in missing empty folder cut garbage; do
        refuses Vera.ttf "$how"
        accepts Arial "$how" 1
    done
    note "each of 5 faults is one line; without Vera.ttf --strict and the exporter end with 1, skav goes on"
    note "all go on without Arial"
}

# The clock runs on.
fault_files_replaced() {
    local how
    start_sound
    virtual_screen
    for how in 'truncate -s 0' 'truncate -s 100000' 'shred -n 1' rm; do
        copy_data
        cd "$work/data" || exit
        start_logged
        sleep 2
        $how zev.mp3
        sleep 5
        is_running || wrong "ended after $how"
        expect_positions 0
        expect_moving
        [ "$how" != rm ] || expect_heard 1
        end_by TERM
    done
}

fault_music_cut() {
    start_sound
    virtual_screen
    copy_data
    cd "$work/data" || exit
    truncate -s 60000 zev.mp3
    start_logged
    sleep 8
    expect_positions 0
    expect_moving
    expect_silence 1
    expect_lines 2
    expect_said 'breaks off'
    end_by TERM
}

long_whole_show_of_cut_music() {
    virtual_screen
    start_sound
    copy_data
    cd "$work/data" || exit
    truncate -s 400000 zev.mp3
    truncate -s 400000 zev_voc.mp3
    start_logged
    expect_end 175 0
    expect_positions 0
    note "two cut files: ended with status $status"
}
