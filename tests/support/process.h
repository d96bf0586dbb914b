// Programs started by a test, ended with it.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/files.h"

struct Command {
    std::vector<std::string> arguments;                              // the program first, looked up in $PATH
    std::map<std::string, std::optional<std::string>> environment{}; // changes to this one; no value: unset
    std::string folder{};                                            // to run in; empty: this one's
    bool input_stays_open = false;                                   // no end of file follows `input`
    std::string input{}; // what standard input gives; at most 64 KiB
};

// A running program. Its output goes to files, so that it never waits for its reader. Killed when this goes.
// The leak checker is off in it: the show ends without freeing anything, on purpose, and so do GL drivers.
class Process {
public:
    explicit Process(const Command& command);
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Waits for the end: the exit status, 128 + n after signal n, or nothing if it is still running after the
    // given time.
    std::optional<int> wait(std::chrono::milliseconds patience = std::chrono::seconds(60));

    bool running() { return !wait(std::chrono::milliseconds(0)); }
    void send(int signal_number) const;

    // What it has written so far.
    std::string output() const;
    std::string errors() const;

private:
    TestFolder folder_;
    pid_t id_ = -1;
    int input_ = -1; // the end that keeps its standard input open, or -1
    std::optional<int> status_;
};

// Tries until `condition` holds, for as long as `patience`; whether it came to hold.
template <class Condition>
bool eventually(Condition condition, std::chrono::milliseconds patience = std::chrono::seconds(60)) {
    const auto give_up = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > give_up) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

struct Finished {
    int status; // as from Process::wait
    std::string out;
    std::string err;
};

// Runs a program to its end, however long it takes.
Finished run_program(const Command& command);
