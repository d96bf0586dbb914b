// What the exporter knows of the show before it runs: its chapters and the pictures of the storyboard. These tables
// follow the show's timeline; a test compares the two.
#pragma once

#include "hosts/common/times.h"

namespace offscreen {

// One chapter per cue.
struct Chapter {
    common::ShowTime time;
    int cost; // of a frame in a video, for the time left: milliseconds of a processor core, drawn in software
    const char* name;
};
constexpr Chapter kChapters[] = {
    {0, 15, "Title"},
    {6'200'000, 15, "Title: towards the wall"},
    {10'000'000, 100, "Greetings"},
    {34'000'000, 75, "Gyroscope room"},
    {40'000'000, 90, "Gyroscope room: between the rings"},
    {45'500'000, 95, "Gyroscope room: tumbling"},
    {55'000'000, 60, "Pulsing cross"},
    {56'500'000, 60, "Pulsing cross: circling"},
    {62'000'000, 60, "Pulsing cross: tumbling"},
    {67'500'000, 30, "You want:"},
    {74'000'000, 45, "Scroller: into the room"},
    {77'000'000, 45, "Scroller"},
    {153'000'000, 50, "Credits"},
};
constexpr int kChapterCount = static_cast<int>(sizeof kChapters / sizeof kChapters[0]);

// A picture of the storyboard: just after each cue, when its flash is over, and wherever something new is seen.
struct Moment {
    common::ShowTime time;
    const char* caption;
};
constexpr Moment kMoments[] = {
    {500'000, "title"},
    {5'900'000, "title, ribbon"},
    {7'000'000, "the camera sinks"},
    {10'400'000, "the wall"},
    {14'000'000, "kOLTVARE"},
    {20'000'000, "nolts varimeer"},
    {25'500'000, "skrelmunt"},
    {31'000'000, "froskets"},
    {34'500'000, "gyroscope"},
    {40'500'000, "between the rings"},
    {46'000'000, "tumbling"},
    {53'000'000, "tumbling on"},
    {55'500'000, "cross, odd second"},
    {58'500'000, "cross, even second"},
    {62'500'000, "cross tumbling"},
    {68'000'000, "you want:"},
    {75'000'000, "the panel fades"},
    {80'000'000, "sheet in a room"},
    {88'700'000, "first plasma flash"},
    {90'500'000, "plasma fades"},
    {97'700'000, "the layer alone"},
    {102'800'000, "third plasma flash"},
    {112'000'000, "glow sprites"},
    {119'000'000, "starfield"},
    {127'000'000, "string of sprites"},
    {136'000'000, "PROST!"},
    {143'000'000, "cube"},
    {149'000'000, "back to the sheet"},
    {153'500'000, "credits, covered"},
    {158'000'000, "the cover fades"},
    {161'000'000, "credits"},
};
constexpr int kMomentCount = static_cast<int>(sizeof kMoments / sizeof kMoments[0]);

} // namespace offscreen
