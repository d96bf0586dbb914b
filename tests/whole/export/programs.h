// The programs under test, ready to be started.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/process.h"

// skav-export with the project's data, in English, unless `arguments` say otherwise.
inline Command export_show(std::vector<std::string> arguments) {
    Command start;
    start.arguments = {SKAV_EXPORT, "--data", SKAV_DATA, "--language", "en"};
    start.arguments.insert(start.arguments.end(), arguments.begin(), arguments.end());
    return start;
}

// The same host under the probe show (probe_show.cpp).
inline Command export_probe(const std::string& probe, std::vector<std::string> arguments) {
    Command start = export_show(std::move(arguments));
    start.arguments[0] = SKAV_PROBE_EXPORT;
    start.environment["PROBE"] = probe;
    return start;
}

// Starts a program and sends it a signal once it has reported progress.
inline Finished stop_at_work(const Command& start, int signal_number) {
    Process process(start);
    EXPECT_TRUE(eventually([&] { return process.errors().find('%') != std::string::npos; }));
    process.send(signal_number);
    const std::optional<int> status = process.wait();
    return {status.value_or(-1), process.output(), process.errors()};
}

// `command`, started by a shell that does `script`, in which "$@" is the command.
inline Command in_shell(const std::string& script, Command command) {
    command.arguments.insert(command.arguments.begin(), {"/bin/bash", "-c", script, "bash"});
    return command;
}

// `command` on a terminal, with `input` typed.
inline Command on_terminal(const Command& command, const std::string& input) {
    std::string line;
    for (const std::string& word : command.arguments) line += "'" + word + "' ";
    Command result = command;
    result.arguments = {"/usr/bin/script", "-qec", line, "/dev/null"};
    result.input = input;
    return result;
}
