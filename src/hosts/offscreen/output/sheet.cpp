// The storyboard: small pictures in rows, with time and caption under each.
#include <ft2build.h>
#include FT_FREETYPE_H

#include <algorithm>
#include <map>

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/frames/running_order.h"
#include "hosts/offscreen/output/output_file.h"
#include "hosts/offscreen/output/png.h"

namespace offscreen {

namespace {

constexpr int kColumns = 6;
constexpr int kReduction = 4; // of a picture, in each direction
constexpr std::uint8_t kPaper = 24;
constexpr int kTimeLevel = 235;
constexpr int kTextLevel = 165;

// All lengths are fractions of a small picture's width, so that a sheet at another scale looks the same.
int gap(int thumb_width) { return thumb_width / 16; }
int text_size(int thumb_width) { return thumb_width / 18; }

// A picture to draw on, empty until it has a size.
class Canvas {
public:
    bool empty() const { return bytes_.empty(); }
    const Picture& picture() const { return picture_; }
    int width() const { return picture_.width; }
    int height() const { return picture_.height; }
    std::uint8_t* at(int x, int y) { return bytes_.data() + (picture_.row(y) - picture_.pixels) + 4 * x; }

    // Makes it that large, in the colour of the paper.
    void resize(int width, int height) {
        picture_.width = width;
        picture_.height = height;
        bytes_.assign(picture_.stride() * static_cast<std::size_t>(height), kPaper);
        picture_.pixels = bytes_.data();
    }

private:
    Picture picture_;
    std::vector<std::uint8_t> bytes_;
};

// Draws lines of text into a picture.
class TextPen {
public:
    // Text `size` pixels high, set in the font file `font`. Throws Failure.
    TextPen(const std::string& font, int size) {
        const bool open = FT_Init_FreeType(&library_) == 0 &&
                          FT_New_Face(library_, font.c_str(), 0, &face_) == 0 &&
                          FT_Set_Pixel_Sizes(face_, 0, static_cast<FT_UInt>(size)) == 0;
        if (open) return;
        if (library_) FT_Done_FreeType(library_);
        throw Failure("cannot use the font " + font);
    }
    ~TextPen() { FT_Done_FreeType(library_); } // and with it the face
    TextPen(const TextPen&) = delete;
    TextPen& operator=(const TextPen&) = delete;

    // Draws `text` in a grey of `level` (0..255) with its base line at row `y` from the top and its left end at
    // column `x`. What does not fit into `width` columns, or the picture, is left out.
    void draw(Canvas& canvas, int x, int y, int width, const std::string& text, int level) {
        const int end = std::min(x + width, canvas.width());
        for (char letter : text) {
            if (FT_Load_Char(face_, static_cast<unsigned char>(letter), FT_LOAD_RENDER) != 0) continue;
            const FT_GlyphSlot glyph = face_->glyph;
            const int advance = static_cast<int>(glyph->advance.x >> 6);
            if (x + advance > end) return;
            for (unsigned row = 0; row < glyph->bitmap.rows; ++row) {
                const int to_y = y - glyph->bitmap_top + static_cast<int>(row);
                if (to_y < 0 || to_y >= canvas.height()) continue;
                const unsigned char* from =
                    glyph->bitmap.buffer + static_cast<int>(row) * glyph->bitmap.pitch;
                for (unsigned column = 0; column < glyph->bitmap.width; ++column) {
                    const int to_x = x + glyph->bitmap_left + static_cast<int>(column);
                    if (to_x < 0 || to_x >= end) continue;
                    std::uint8_t* pixel = canvas.at(to_x, to_y);
                    for (int i = 0; i < 3; ++i) {
                        pixel[i] =
                            static_cast<std::uint8_t>(pixel[i] + (level - pixel[i]) * from[column] / 255);
                    }
                }
            }
            x += advance;
        }
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

// The mean of each square of kReduction pixels.
void reduce(const Picture& from, Canvas& to, int left, int top) {
    for (int y = 0; y < from.height / kReduction; ++y) {
        std::uint8_t* out = to.at(left, top + y);
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

class Sheet : public Sink {
public:
    Sheet(const std::string& path, const common::ShowFrames& frames, bool force)
        : path_(path), replace_(check_outputs({path}, force)) {
        for (int i = 0; i < kMomentCount; ++i) {
            places_.emplace(frames.frame_on_screen_at(kMoments[i].time), i);
        }
    }

    void take(const Picture& picture) override {
        const int thumb_width = picture.width / kReduction;
        const int thumb_height = picture.height / kReduction;
        const int margin = gap(thumb_width);
        const int size = text_size(thumb_width);
        if (sheet_.empty()) {
            const int rows = (kMomentCount + kColumns - 1) / kColumns;
            cell_width_ = thumb_width + margin;
            cell_height_ = thumb_height + 2 * margin + size;
            sheet_.resize(kColumns * cell_width_ + margin, rows * cell_height_ + margin);
        }
        TextPen pen("Vera.ttf", size);
        const auto [begin, end] = places_.equal_range(picture.info.frame);
        for (auto place = begin; place != end; ++place) {
            const Moment& moment = kMoments[place->second];
            const int left = margin + place->second % kColumns * cell_width_;
            const int top = margin + place->second / kColumns * cell_height_;
            const int base = top + thumb_height + margin / 4 + size;
            const int time_width = thumb_width / 4;
            reduce(picture, sheet_, left, top);
            pen.draw(sheet_, left, base, time_width, common::seconds_text(moment.time), kTimeLevel);
            pen.draw(sheet_, left + time_width, base, thumb_width - time_width, moment.caption, kTextLevel);
        }
    }

    void finish() override { write_png(sheet_.picture(), path_, replace_); }

private:
    std::string path_;
    bool replace_;
    std::multimap<std::int64_t, int> places_; // by frame
    Canvas sheet_;                            // empty until the first picture tells the size
    int cell_width_ = 0;
    int cell_height_ = 0;
};

} // namespace

std::unique_ptr<Sink> make_sheet(const std::string& path, const common::ShowFrames& frames, bool force) {
    return std::make_unique<Sheet>(path, frames, force);
}

} // namespace offscreen
