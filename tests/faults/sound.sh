# Sound devices that are missing, go away, hang and come back, and a processor that is too slow. The place of what is
# heard is compared to the sample in ctest; here whole shows are played.

fault_no_sound_device() {
    no_sound
    virtual_screen
    start_logged
    sleep 4
    expect_positions 0
    expect_moving
    expect_lines 0
    end_by INT
}

# A server that is killed and comes back, twice.
fault_device_killed() {
    start_sound
    virtual_screen
    start_logged
    for _ in 1 2; do
        expect_heard 2
        kill -KILL "$pulse"
        sleep 3
        start_sound
    done
    expect_heard 2
    expect_positions 0
    end_by INT
}

fault_device_suspended() {
    start_sound
    virtual_screen
    start_logged
    expect_heard 2
    pactl suspend-sink nothing 1
    sleep 5
    pactl suspend-sink nothing 0
    expect_heard 2
    expect_positions 0
    end_by INT
}

fault_device_removed() {
    start_sound
    virtual_screen
    start_logged
    expect_heard 2
    pactl unload-module module-null-sink
    sleep 3
    pactl load-module $null_sink
    expect_heard 2
    expect_positions 0
    end_by INT
}

fault_sound_hung_at_start() {
    start_sound
    virtual_screen
    kill -STOP "$pulse"
    start_logged
    sleep 4
    expect_moving
    expect_positions 0
    kill -CONT "$pulse"
    expect_heard 2
    expect_positions 0
    kill -STOP "$pulse"
    sleep 1
    end_by INT
    start "$skav"
    sleep 1
    end_by INT
    note "Ctrl-C ends it at once also while the server hangs"
}

fault_sound_hung_later() {
    start_sound
    virtual_screen
    start_logged
    expect_heard 2
    kill -STOP "$pulse"
    sleep 5
    kill -CONT "$pulse"
    expect_heard 2
    expect_positions 0
    end_by INT
}

# Stopped for ten seconds as by Ctrl-Z: the show waits, and goes on where it was.
fault_stopped() {
    local before after
    start_sound
    virtual_screen
    start_logged
    expect_heard 2
    kill -STOP "$pid"
    sleep 0.1
    before=$(position)
    sleep 10
    kill -CONT "$pid"
    sleep 0.2
    after=$(position)
    holds "$after < $before + 0.6" || wrong "went on from $before s to $after s"
    expect_heard 2
    expect_positions 10
    end_by INT
}

long_whole_show_in_silence() {
    no_sound
    virtual_screen
    start_logged
    expect_end 170 0 0
    expect_positions 0
}

# As on a machine that cannot keep up at all.
long_whole_show_at_6_percent() {
    start_sound
    virtual_screen
    start_logged
    limit_processor "$pid" 60
    expect_end 175 0 0
    expect_positions 0
}

long_sound_comes_and_goes() {
    start_sound
    virtual_screen
    start_logged
    for _ in 1 2 3 4 5 6; do
        sleep 6
        kill -STOP "$pulse"
        sleep 4
        kill -CONT "$pulse"
        expect_heard 2
        kill -KILL "$pulse"
        sleep 3
        start_sound
        expect_heard 2
    done
    expect_end 100 0 0
    expect_positions 0
}
