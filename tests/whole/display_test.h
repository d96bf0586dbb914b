// What the tests of the desktop's display have in common.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/support/process.h"
#include "tests/whole/display_server.h"
#include "tests/whole/viewer.h"

// The test show (test_show.cpp) on a server, doing `task`.
Command test_show(const DisplayServer& server, const std::string& task = "picture",
                  const std::vector<std::string>& arguments = {});

// The whole show on a server, in the folder of its data, with its clock standing still at a show time.
Command show_at(const DisplayServer& server, int milliseconds);

// The part of a screen that a picture takes, y downwards from the top.
struct Place {
    int x, y, width, height;
};

// Whether a screen shows the test picture there and black everywhere else. Pixels that a filter may have
// mixed from two colours are passed over; at its own size none are.
bool shows_test_picture(const Pixels& screen, const Place& place);

// How many lines a text has.
int count_lines(const std::string& text);
