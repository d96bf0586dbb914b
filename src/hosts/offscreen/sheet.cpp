#include "hosts/offscreen/sheet.h"

#include <algorithm>
#include <cstring>

#include "hosts/offscreen/caption.h"
#include "hosts/offscreen/png_file.h"
#include "hosts/offscreen/running_order.h"

namespace {

constexpr int kColumns = 6;
constexpr int kReduction = 4; // of a picture, in each direction
constexpr std::uint8_t kPaper = 24;
constexpr int kTimeLevel = 235;
constexpr int kTextLevel = 165;

// All lengths are fractions of a small picture's width, so that a sheet at another scale looks the same.
int gap(int thumb_width) { return thumb_width / 16; }
int text_size(int thumb_width) { return thumb_width / 18; }

// The mean of each square of kReduction pixels.
void reduce(const Picture& from, Picture& to, int left, int top) {
    for (int y = 0; y < from.height / kReduction; ++y) {
        std::uint8_t* out = to.row(top + y) + 4 * left;
        for (int x = 0; x < from.width / kReduction; ++x, out += 4) {
            for (int i = 0; i < 3; ++i) {
                int sum = 0;
                for (int dy = 0; dy < kReduction; ++dy) {
                    const std::uint8_t* in = from.row(y * kReduction + dy) + 4 * x * kReduction + i;
                    for (int dx = 0; dx < kReduction; ++dx) sum += in[4 * dx];
                }
                constexpr int kPixels = kReduction * kReduction;
                out[i] = static_cast<std::uint8_t>((sum + kPixels / 2) / kPixels);
            }
        }
    }
}

} // namespace

Sheet::Sheet(const std::string& path, const ShowFrames& frames) : path_(path) {
    expect_writable(path);
    for (int i = 0; i < kMomentCount; ++i) {
        const std::int64_t frame = frames.frame_on_screen_at(kMoments[i].time);
        wanted_.add(frame, frame + 1);
        places_.emplace(frame, i);
    }
}

void Sheet::take(const Picture& picture) {
    const int thumb_width = picture.width / kReduction;
    const int thumb_height = picture.height / kReduction;
    const int margin = gap(thumb_width);
    const int size = text_size(thumb_width);
    if (sheet_.pixels.empty()) {
        const int rows = (kMomentCount + kColumns - 1) / kColumns;
        cell_width_ = thumb_width + margin;
        cell_height_ = thumb_height + 2 * margin + size;
        sheet_.resize(kColumns * cell_width_ + margin, rows * cell_height_ + margin);
        std::fill(sheet_.pixels.begin(), sheet_.pixels.end(), kPaper);
    }
    Caption caption("Vera.ttf", size);
    const auto [begin, end] = places_.equal_range(picture.info.frame);
    for (auto place = begin; place != end; ++place) {
        const Moment& moment = kMoments[place->second];
        const int left = margin + place->second % kColumns * cell_width_;
        const int top = margin + place->second / kColumns * cell_height_;
        const int base = top + thumb_height + margin / 4 + size;
        const int time_width = thumb_width / 4;
        reduce(picture, sheet_, left, top);
        caption.draw(sheet_, left, base, time_width, seconds_text(moment.time), kTimeLevel);
        caption.draw(sheet_, left + time_width, base, thumb_width - time_width, moment.caption, kTextLevel);
    }
}

void Sheet::finish() {
    if (!sheet_.pixels.empty()) write_png(sheet_, path_);
}
