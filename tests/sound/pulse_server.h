// A PulseAudio server of the test's own, with one device that plays into nothing at the pace of real time,
// and the environment that makes this process's sound go there, or nowhere.
#pragma once

#include <sys/types.h>

#include "tests/support/files.h"

class PulseServer {
public:
    // Starts the server, points this process to it and returns once it answers.
    PulseServer();
    ~PulseServer();
    PulseServer(const PulseServer&) = delete;
    PulseServer& operator=(const PulseServer&) = delete;

    // Ends the server at once, as a crash would.
    void kill();

    // Starts it again.
    void restart();

    // Makes the server stop answering, as one that hangs, and answer again.
    void freeze();
    void thaw();

    // Suspends its device, or lets it play again.
    void suspend(bool suspended);

    // Takes its device away, or gives it one again.
    void remove_device();
    void add_device();

private:
    void start();

    TestFolder folder_;
    pid_t process_ = -1;
};

// Points this process to a folder in which no sound server, no sound card and no user's settings are found.
void hide_sound_devices(const TestFolder& folder);
