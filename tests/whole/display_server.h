// X servers of a test's own, on display numbers that they choose themselves, ended with the test.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/support/process.h"

class DisplayServer {
public:
    // An Xvfb with one screen and further arguments.
    static std::unique_ptr<DisplayServer> virtual_screen(int width, int height,
                                                         const std::vector<std::string>& arguments = {});

    // A real Xorg whose dummy monitor is in a 1280x960 mode and has one of 1024x768 at 60 Hz and one of 800x600. Only
    // root can start one.
    static std::unique_ptr<DisplayServer> with_modes();

    // For $DISPLAY.
    const std::string& name() const { return name_; }

    // Ends the server while its clients are connected.
    void end();

    // Keeps the server from answering.
    void freeze();

private:
    DisplayServer() = default;
    bool start(std::vector<std::string> words);

    TestFolder folder_;
    std::unique_ptr<Process> process_;
    std::string name_;
};
