# Displays that are missing, go away, are closed or change.

fault_no_display() {
    start_sound
    start "$skav"
    expect_end 2 1 1
    start env WAYLAND_DISPLAY=wayland-0 "$skav"
    expect_end 2 1 1
    expect_said xwayland
    start env DISPLAY=:54321 "$skav"
    expect_end 2 1 1
    expect_said :54321
    note "one line and status 1 without, in a Wayland session and for a server that is not there"
}

fault_no_glx() {
    start_sound
    virtual_screen -extension GLX
    start "$skav"
    expect_end 2 1 1
    expect_said OpenGL
    note "one line, status 1"
}

fault_server_killed() {
    local moment
    start_sound
    for moment in loading show; do
        virtual_screen
        start "$skav"
        eventually 10 shows_something || wrong "no picture"
        [ "$moment" = loading ] || sleep 3
        kill -KILL "$server"
        expect_end 2 1 1
        expect_said 'X server is lost'
    done
    note "one line, status 1, at once, while loading and later"
}

# No call to the server returns; a signal ends it all the same.
fault_server_stopped() {
    start_sound
    virtual_screen
    start_logged
    sleep 2
    kill -STOP "$server"
    sleep 3
    kill -TERM "$pid"
    expect_end 2 143 0
    note "a signal ends it within 2 s"
    kill -CONT "$server"
}

fault_window_closed() {
    local how moment
    start_sound
    virtual_screen
    for how in close destroy kill; do
        for moment in loading show; do
            start "$skav" --window
            eventually 10 shows_something || wrong "no picture"
            [ "$moment" = loading ] || sleep 2
            "$screen" "$how" skav || wrong "no window"
            expect_end 2 0 0
        done
    done
    note "status 0 when closed, when destroyed and when its connection is ended, while loading and later"
}

fault_signals() {
    local signal moment slowest=0 which from last
    start_sound
    screen_with_modes
    for signal in INT TERM HUP QUIT KILL ABRT SEGV; do
        for moment in loading show; do
            start "$skav"
            eventually 10 mode_is 1024x768 || wrong "the mode is not entered"
            [ "$moment" = loading ] || sleep 1.5
            from=$(seconds)
            kill "-$signal" "$pid"
            eventually 3 mode_is 1280x960 || wrong "the mode is not restored after SIG$signal while $moment"
            last=$(calculate "$(seconds) - $from")
            holds "$last <= 1" || wrong "the mode is restored after $last s by SIG$signal while $moment"
            holds "$last > $slowest" && slowest=$last which="SIG$signal while $moment"
            expect_end 2 $((128 + $(kill -l "$signal"))) 0
        done
    done
    note "the mode is restored within $slowest s ($which) after each of 7 signals, while loading and later"
}

fault_layout_changed() {
    local mode
    no_sound
    screen_with_modes
    start env TEST_CLOCK_START_MS=155000 "$on_clock"
    eventually 10 mode_is 1024x768 || wrong "the mode is not entered"
    sleep 1
    for mode in 800x600 1280x960 800x600; do
        "$screen" set-mode $mode
        expect_moving
        mode_is $mode || wrong "the mode $mode is undone"
    done
    expect_end 12 0 0
    mode_is 800x600 || wrong "the mode that was chosen meanwhile is undone"
    note "plays on in 800x600, 1280x960 and 800x600 and ends by itself; the last mode stays"
}

fault_two_instances() {
    local first
    start_sound
    screen_with_modes
    start "$skav"
    first=$pid
    eventually 10 mode_is 1024x768 || wrong "the mode is not entered"
    sleep 1
    start "$skav"
    sleep 2
    expect_running 1
    kill -TERM "$first"
    eventually 2 mode_is 1280x960 || wrong "the first does not undo its mode"
    expect_running 1
    expect_moving
    end_by TERM
    mode_is 1280x960 || wrong "the mode is $("$screen" mode) in the end"
    note "each plays, and ends for itself; the mode in the end is the desktop's"
}
