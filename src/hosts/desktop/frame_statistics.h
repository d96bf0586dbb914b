// How evenly the frames of the show came, for --stats. The times are handed in: seconds of a clock that never goes
// back.
//
// It counts from the first music position that is read, when loading is over:
//
//     frames shown       pictures brought to the window; none come while it is hidden
//     late frames        pictures that came more than one and a half refreshes after the one before, so that at least
//                        one refresh repeated that one
//     missed refreshes   how many refreshes repeated a picture: over all late frames the time since the picture
//                        before, in refreshes rounded to the nearest, less one
//     worst frame        the longest time between two pictures
//     clock jitter       by how much the music moved on more or less than the time that passed, from one reading of
//                        its position to the next: the mean and the largest amount. Positions are whole milliseconds,
//                        so a perfect clock has a mean of about 0.3 ms. What comes before a piece is heard is left
//                        out.
#pragma once

#include <optional>
#include <string>

namespace desktop {

class FrameStatistics {
public:
    // For a screen with `refresh_rate` refreshes per second.
    explicit FrameStatistics(double refresh_rate) : refresh_rate_(refresh_rate) {}

    // The show has read its music's position.
    void position_read(double now, unsigned milliseconds);

    // A picture has been brought to the window.
    void shown(double now);

    // No picture is shown until the next call of shown(): the window is hidden.
    void hidden() { last_shown_.reset(); }

    // The above in four lines, without a line feed at the end.
    std::string text() const;

private:
    struct Reading {
        double time;
        unsigned milliseconds;
    };

    double refresh_rate_;

    std::optional<double> first_shown_, last_shown_;
    double end_ = 0; // of the last picture
    long frames_ = 0, late_ = 0, missed_ = 0;
    double worst_ = 0, worst_at_ = 0; // seconds; the music's position after it, seconds

    std::optional<Reading> last_read_;
    bool music_moves_ = false; // the position has moved since the piece began
    long steps_ = 0;
    double jitter_sum_ = 0, jitter_most_ = 0; // milliseconds
};

} // namespace desktop
