// Text in images, against a model that composites FreeType's own bitmaps pixel by pixel.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "show/image/progress.h"
#include "show/text/text.h"
#include "tests/support/image.h"

namespace {

// What FreeType is made to fail at.
struct Failures {
    unsigned character = 0; // a character code; 0: none
    bool sizes = false;
    bool library = false;
} g_failing;

// Makes FreeType fail for as long as this lives.
class Failing {
public:
    explicit Failing(const Failures& failures) { g_failing = failures; }
    ~Failing() { g_failing = {}; }
    Failing(const Failing&) = delete;
    Failing& operator=(const Failing&) = delete;
};

} // namespace

extern "C" {

FT_Error __real_FT_Load_Char(FT_Face face, FT_ULong code, FT_Int32 flags);
FT_Error __wrap_FT_Load_Char(FT_Face face, FT_ULong code, FT_Int32 flags);
FT_Error __real_FT_Set_Pixel_Sizes(FT_Face face, FT_UInt width, FT_UInt height);
FT_Error __wrap_FT_Set_Pixel_Sizes(FT_Face face, FT_UInt width, FT_UInt height);
FT_Error __real_FT_Init_FreeType(FT_Library* library);
FT_Error __wrap_FT_Init_FreeType(FT_Library* library);

} // extern "C"

FT_Error __wrap_FT_Load_Char(FT_Face face, FT_ULong code, FT_Int32 flags) {
    if (g_failing.character != 0 && code == g_failing.character) return FT_Err_Invalid_Glyph_Index;
    return __real_FT_Load_Char(face, code, flags);
}

FT_Error __wrap_FT_Set_Pixel_Sizes(FT_Face face, FT_UInt width, FT_UInt height) {
    return g_failing.sizes ? FT_Err_Invalid_Pixel_Size : __real_FT_Set_Pixel_Sizes(face, width, height);
}

FT_Error __wrap_FT_Init_FreeType(FT_Library* library) {
    return g_failing.library ? FT_Err_Out_Of_Memory : __real_FT_Init_FreeType(library);
}

namespace {

const char kVera[] = SKAV_DATA "/Vera.ttf";

ImagePtr make_image(int width, int height, std::uint32_t flags, std::uint32_t color) {
    ImagePtr img(image_create(width, height, flags));
    image_fill(img.get(), color);
    return img;
}

FontPtr vera() { return FontPtr(font_load(kVera)); }

std::vector<int> plane_values(const Image* img, const std::int32_t* plane) {
    return std::vector<int>(plane, plane + image_count(img));
}

std::vector<int> grey_values(const ImagePtr& img) { return plane_values(img.get(), img->green); }

// The face under test, opened once more by other means.
class ModelFace {
public:
    ModelFace() {
        EXPECT_EQ(FT_Init_FreeType(&library_), 0);
        EXPECT_EQ(FT_New_Face(library_, kVera, 0, &face_), 0);
    }
    ~ModelFace() {
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }
    ModelFace(const ModelFace&) = delete;
    ModelFace& operator=(const ModelFace&) = delete;

    FT_GlyphSlot glyph(int w, int h, unsigned code) {
        EXPECT_EQ(FT_Set_Pixel_Sizes(face_, static_cast<FT_UInt>(w), static_cast<FT_UInt>(h)), 0);
        EXPECT_EQ(FT_Load_Char(face_, code, FT_LOAD_RENDER), 0);
        return face_->glyph;
    }

    // The plane after a line of text: for every pixel of the plane, whether the glyph covers it.
    void draw(std::vector<int>& plane, int width, int height, int x, int y, int w, int h, int tracking,
              const std::string& text) {
        double pen = x;
        for (const char byte : text) {
            const FT_GlyphSlot slot = glyph(w, h, static_cast<unsigned>(byte) & 0xFFu);
            const int left = std::max(0, static_cast<int>(slot->metrics.horiBearingX / 64.0 + pen));
            const int top = std::max(0, y - static_cast<int>(slot->metrics.horiBearingY >> 6));
            const int rows = static_cast<int>(slot->bitmap.rows);
            const int bottom = top + rows > height ? std::min(top + rows, width) : top + rows;
            for (int py = top; py < std::min(bottom, height); ++py)
                for (int px = left; px < std::min(left + static_cast<int>(slot->bitmap.width), width); ++px) {
                    const int c = slot->bitmap.buffer[(py - top) * slot->bitmap.pitch + px - left];
                    int& d = plane[static_cast<std::size_t>(py * width + px)];
                    const int kept = c >= 128 ? 254 - c : 255 - c;
                    d = c * 257 + static_cast<int>(std::floor(kept * static_cast<double>(d) / 256));
                }
            pen += static_cast<double>(slot->advance.x) * (1.0 + tracking / 256.0) / 64.0;
        }
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

struct Line {
    const char* name;
    int width, height;
    int x, y, glyph_w, glyph_h, tracking;
    const char* text;
};

std::ostream& operator<<(std::ostream& out, const Line& line) { return out << line.name; }

class DrawnLine : public testing::TestWithParam<Line> {};

int g_steps = 0;

} // namespace

TEST_P(DrawnLine, IsTheCompositeOfItsGlyphs) {
    const Line& line = GetParam();
    const FontPtr font = vera();
    ASSERT_NE(font, nullptr);
    const ImagePtr img = make_image(line.width, line.height, kImageGrey, 0x50);
    std::vector<int> expected = grey_values(img);
    const std::vector<int> before = expected;
    ModelFace().draw(expected, line.width, line.height, line.x, line.y, line.glyph_w, line.glyph_h,
                     line.tracking, line.text);
    draw_text(img.get(), font.get(), line.x, line.y, line.glyph_w, line.glyph_h, line.tracking, line.text);
    EXPECT_EQ(grey_values(img), expected);
    EXPECT_NE(expected, before) << "the line should show";
}

INSTANTIATE_TEST_SUITE_P(
    Lines, DrawnLine,
    testing::Values(Line{"plain", 256, 256, 10, 60, 20, 20, 0, "Zwei Bier, bitte. 0123456789"},
                    Line{"narrowed", 256, 256, 10, 60, 20, 20, -12, "tracking is a part of 256"},
                    Line{"widened", 256, 256, 10, 60, 12, 12, 100, "wide"},
                    Line{"stretched", 512, 512, 4, 300, 108, 20, 0, "PROST"},
                    Line{"slender", 128, 128, 4, 90, 7, 60, 0, "slender"},
                    Line{"latin1", 256, 256, 10, 60, 24, 24, 0,
                         "Gr\xFC\xDF"
                         "e \xC4\xD6\xDC \xE9\xA9"},
                    Line{"control_bytes", 256, 256, 10, 60, 20, 20, 0,
                         "a\nb\tc\x01"
                         "d\x7F\x80"},
                    Line{"before_the_left_edge", 64, 64, -9, 40, 20, 20, 0, "mnop"},
                    Line{"above_the_upper_edge", 64, 64, 5, 2, 20, 20, 0, "Upper"},
                    Line{"past_the_right_edge", 64, 64, 20, 40, 20, 20, 0, "right"},
                    Line{"past_the_lower_edge", 64, 64, 5, 60, 20, 20, 0, "gypsy"},
                    Line{"past_the_lower_edge_of_a_wide_image", 96, 40, 5, 38, 20, 20, 0, "gypsy"},
                    Line{"past_the_lower_edge_of_a_tall_image", 40, 48, 2, 46, 14, 20, 0, "Wgy"}),
    [](const testing::TestParamInfo<Line>& line) { return std::string(line.param.name); });

TEST(DrawText, AGlyphLeftOfTheImageIsMovedInNotCut) {
    const FontPtr font = vera();
    const ImagePtr moved = make_image(64, 64, kImageGrey, 0);
    draw_text(moved.get(), font.get(), -50, 40, 20, 20, 0, "H");
    ModelFace model;
    const FT_GlyphSlot slot = model.glyph(20, 20, 'H');
    const int top = 40 - static_cast<int>(slot->metrics.horiBearingY >> 6);
    for (unsigned y = 0; y < slot->bitmap.rows; ++y)
        for (unsigned x = 0; x < slot->bitmap.width; ++x)
            EXPECT_EQ(moved->green[(static_cast<unsigned>(top) + y) * 64 + x],
                      slot->bitmap.buffer[y * static_cast<unsigned>(slot->bitmap.pitch) + x] * 257);
}

TEST(DrawText, AnOffsetJustLeftOfTheEdgeTruncatesToColumnZero) {
    const FontPtr font = vera();
    const ImagePtr a = make_image(64, 64, kImageGrey, 0);
    const ImagePtr b = make_image(64, 64, kImageGrey, 0);
    draw_text(a.get(), font.get(), -2, 40, 20, 20, 0, "H");
    draw_text(b.get(), font.get(), -1000, 40, 20, 20, 0, "H");
    EXPECT_EQ(grey_values(a), grey_values(b));
}

TEST(DrawText, ATallImageIsCutAtTheRowOfItsWidth) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(40, 48, kImageGrey, 0);
    draw_text(img.get(), font.get(), 2, 56, 20, 20, 0, "HH"); // rows 41 and on, past the lower edge
    EXPECT_EQ(grey_values(img), std::vector<int>(40 * 48, 0));
    draw_text(img.get(), font.get(), 2, 46, 20, 20, 0, "HH"); // rows 31 to 45: wholly inside, so not cut
    bool below = false;
    for (int i = 40 * 40; i < 40 * 48; ++i) below = below || img->green[i] != 0;
    EXPECT_TRUE(below);
}

TEST(DrawText, WithoutTrackingThePenAdvancesByTheFontsAdvance) {
    const FontPtr font = vera();
    ModelFace model;
    const int advance = static_cast<int>(model.glyph(20, 20, 'H')->advance.x / 64);
    const ImagePtr pair = make_image(128, 64, kImageGrey, 0);
    const ImagePtr singles = make_image(128, 64, kImageGrey, 0);
    draw_text(pair.get(), font.get(), 10, 40, 20, 20, 0, "HH");
    draw_text(singles.get(), font.get(), 10, 40, 20, 20, 0, "H");
    draw_text(singles.get(), font.get(), 10 + advance, 40, 20, 20, 0, "H");
    EXPECT_EQ(grey_values(pair), grey_values(singles));
}

TEST(DrawText, TrackingOfMinus256DoesNotAdvance) {
    const FontPtr font = vera();
    const ImagePtr pair = make_image(64, 64, kImageGrey, 0);
    const ImagePtr singles = make_image(64, 64, kImageGrey, 0);
    draw_text(pair.get(), font.get(), 10, 40, 20, 20, -256, "HT");
    draw_text(singles.get(), font.get(), 10, 40, 20, 20, 0, "H");
    draw_text(singles.get(), font.get(), 10, 40, 20, 20, 0, "T");
    EXPECT_EQ(grey_values(pair), grey_values(singles));
}

TEST(DrawText, TrackingOfMinus512WalksBackwards) {
    const FontPtr font = vera();
    ModelFace model;
    const int advance = static_cast<int>(model.glyph(20, 20, 'H')->advance.x / 64);
    const ImagePtr pair = make_image(64, 64, kImageGrey, 0);
    const ImagePtr singles = make_image(64, 64, kImageGrey, 0);
    draw_text(pair.get(), font.get(), 30, 40, 20, 20, -512, "HT");
    draw_text(singles.get(), font.get(), 30, 40, 20, 20, 0, "H");
    draw_text(singles.get(), font.get(), 30 - advance, 40, 20, 20, 0, "T");
    EXPECT_EQ(grey_values(pair), grey_values(singles));
}

TEST(DrawText, FullCoverageGives65535OnBlackAnd65279OnWhite) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(64, 64, kImageGrey, 0);
    // Large enough that the middle of the stem is fully covered.
    draw_text(img.get(), font.get(), 4, 60, 60, 60, 0, "I");
    const std::vector<int> once = grey_values(img);
    const auto full = std::max_element(once.begin(), once.end());
    ASSERT_EQ(*full, 65535);
    draw_text(img.get(), font.get(), 4, 60, 60, 60, 0, "I");
    EXPECT_EQ(img->green[full - once.begin()], 65279);
}

TEST(DrawText, UncoveredPixelsOfTheGlyphsBoxLoseA256th) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(64, 64, kImageGrey, 0xFF);
    ModelFace model;
    const FT_GlyphSlot slot = model.glyph(40, 40, 'O');
    const int middle_x = 4 + static_cast<int>(slot->metrics.horiBearingX / 64 + slot->bitmap.width / 2);
    const int middle_y = 50 - static_cast<int>(slot->bitmap.rows / 2);
    draw_text(img.get(), font.get(), 4, 50, 40, 40, 0, "O");
    EXPECT_EQ(img->green[middle_y * 64 + middle_x], 65535 * 255 / 256);
    EXPECT_EQ(img->green[0], 65535) << "outside of the box nothing changes";
}

TEST(DrawText, ValuesOutsideOfTheNominalRangeShiftArithmetically) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(64, 64, kImageGrey, 0);
    for (std::size_t i = 0; i < image_count(img.get()); ++i) img->green[i] = i % 2 ? -1000 : 200000;
    std::vector<int> expected = grey_values(img);
    ModelFace().draw(expected, 64, 64, 4, 50, 40, 40, 0, "O");
    draw_text(img.get(), font.get(), 4, 50, 40, 40, 0, "O");
    EXPECT_EQ(grey_values(img), expected);
}

TEST(DrawText, DrawsIntoThreePlanesAndNeverIntoAlpha) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(64, 64, kImageColor | kImageAlpha, 0x33102030);
    std::vector<int> red = plane_values(img.get(), img->red);
    std::vector<int> green = plane_values(img.get(), img->green);
    std::vector<int> blue = plane_values(img.get(), img->blue);
    const std::vector<int> alpha = plane_values(img.get(), img->alpha);
    ModelFace model;
    for (std::vector<int>* plane : {&red, &green, &blue}) model.draw(*plane, 64, 64, 4, 50, 30, 30, 0, "gB");
    draw_text(img.get(), font.get(), 4, 50, 30, 30, 0, "gB");
    EXPECT_EQ(plane_values(img.get(), img->red), red);
    EXPECT_EQ(plane_values(img.get(), img->green), green);
    EXPECT_EQ(plane_values(img.get(), img->blue), blue);
    EXPECT_EQ(plane_values(img.get(), img->alpha), alpha);
}

TEST(DrawText, NothingHappensWithoutAnImageAFontAFaceOrAText) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(32, 32, kImageGrey, 0x12);
    const std::vector<int> before = grey_values(img);
    Font faceless = {};
    draw_text(nullptr, font.get(), 2, 20, 12, 12, 0, "a");
    draw_text(img.get(), nullptr, 2, 20, 12, 12, 0, "a");
    draw_text(img.get(), &faceless, 2, 20, 12, 12, 0, "a");
    draw_text(img.get(), font.get(), 2, 20, 12, 12, 0, nullptr);
    draw_text(img.get(), font.get(), 2, 20, 12, 12, 0, "");
    EXPECT_EQ(grey_values(img), before);
}

TEST(DrawText, PensFarOutsideAreHarmless) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(32, 32, kImageGrey, 0x12);
    const std::vector<int> before = grey_values(img);
    const int most = std::numeric_limits<int>::max();
    const int least = std::numeric_limits<int>::min();
    draw_text(img.get(), font.get(), most, 20, 12, 12, most, "abc");
    draw_text(img.get(), font.get(), 2, most, 12, 12, 0, "abc");
    draw_text(img.get(), font.get(), 32, 20, 12, 12, 0, "abc");
    EXPECT_EQ(grey_values(img), before);
    // Moved in to the corner.
    draw_text(img.get(), font.get(), least, least, 12, 12, least, "abc");
    EXPECT_NE(grey_values(img), before);
}

TEST(DrawText, ASizeOfZeroIsTheOtherSize) {
    const FontPtr font = vera();
    const ImagePtr zero = make_image(64, 64, kImageGrey, 0);
    const ImagePtr square = make_image(64, 64, kImageGrey, 0);
    draw_text(zero.get(), font.get(), 4, 40, 0, 20, 0, "ab");
    draw_text(square.get(), font.get(), 4, 40, 20, 20, 0, "ab");
    EXPECT_EQ(grey_values(zero), grey_values(square));
    draw_text(zero.get(), font.get(), 4, 40, 0, 0, 0, "ab"); // as small as it gets, but no harm
}

TEST(DrawText, ACharacterWithoutAGlyphIsDrawnAsTheFontsSubstitute) {
    const FontPtr font = vera();
    ASSERT_EQ(FT_Get_Char_Index(font->face, 0x01), 0u);
    const ImagePtr img = make_image(64, 64, kImageGrey, 0);
    std::vector<int> expected = grey_values(img);
    ModelFace().draw(expected, 64, 64, 4, 40, 20, 20, 0, "\x01");
    draw_text(img.get(), font.get(), 4, 40, 20, 20, 0, "\x01");
    EXPECT_EQ(grey_values(img), expected);
}

TEST(DrawText, ACharacterThatCannotBeLoadedIsSkippedWithoutAdvancing) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(64, 64, kImageGrey, 0);
    std::vector<int> expected = grey_values(img);
    ModelFace().draw(expected, 64, 64, 4, 40, 20, 20, 0, "ac");
    const Failing failing({'b', false, false});
    draw_text(img.get(), font.get(), 4, 40, 20, 20, 0, "abc");
    EXPECT_EQ(grey_values(img), expected);
}

TEST(DrawText, DrawsNothingInASizeThatIsRefused) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(64, 64, kImageGrey, 0xff404040);
    const std::vector<int> expected = grey_values(img);
    const Failing failing({0, true, false});
    draw_text(img.get(), font.get(), 4, 40, 20, 20, 0, "abc");
    EXPECT_EQ(grey_values(img), expected);
}

TEST(FontLoad, WithoutTheLibraryGivesNullAndTriesAgain) {
    const FT_Library library = g_ft_library;
    g_ft_ready = 0; // as at the program's start
    {
        const Failing failing({0, false, true});
        EXPECT_EQ(font_load(kVera), nullptr);
        EXPECT_EQ(g_ft_ready, 0);
    }
    {
        const FontPtr font = vera();
        EXPECT_NE(font, nullptr);
        EXPECT_EQ(g_ft_ready, 1);
    }
    if (library) {
        FT_Done_FreeType(g_ft_library);
        g_ft_library = library;
    }
}

TEST(DrawText, DoesNotReportProgress) {
    const FontPtr font = vera();
    const ImagePtr img = make_image(64, 64, kImageGrey, 0);
    g_progress_hook = [] { ++g_steps; };
    draw_text(img.get(), font.get(), 4, 40, 20, 20, 0, "ab");
    g_progress_hook = nullptr;
    EXPECT_EQ(g_steps, 0);
}

TEST(FontLoad, MakesTheLibraryOnce) {
    const FontPtr first = vera();
    EXPECT_EQ(g_ft_ready, 1);
    const FT_Library library = g_ft_library;
    const FontPtr second = vera();
    EXPECT_EQ(g_ft_library, library);
    EXPECT_NE(first->face, second->face);
}

TEST(FontLoad, IsNullForWhatIsMissingOrNoFont) {
    EXPECT_EQ(font_load(SKAV_DATA "/no such font.ttf"), nullptr);
    EXPECT_EQ(font_load(SKAV_DATA), nullptr);
    EXPECT_EQ(font_load(__FILE__), nullptr);
}

TEST(FontReopen, PutsAnotherFaceInPlace) {
    const FontPtr font = vera();
    font_reopen(font.get(), SKAV_DATA "/Arial");
    ASSERT_NE(font->face, nullptr);
    const FontPtr direct(font_load(SKAV_DATA "/Arial"));
    ASSERT_NE(direct, nullptr);
    const ImagePtr a = make_image(64, 64, kImageGrey, 0);
    const ImagePtr b = make_image(64, 64, kImageGrey, 0);
    draw_text(a.get(), font.get(), 4, 40, 30, 30, 0, "Rg");
    draw_text(b.get(), direct.get(), 4, 40, 30, 30, 0, "Rg");
    EXPECT_EQ(grey_values(a), grey_values(b));
}

TEST(FontReopen, LeavesNoFaceWhereItFailsAndMayBeTriedAgain) {
    const FontPtr font = vera();
    font_reopen(font.get(), SKAV_DATA "/no such font.ttf");
    EXPECT_EQ(font->face, nullptr);
    const ImagePtr img = make_image(32, 32, kImageGrey, 0);
    draw_text(img.get(), font.get(), 2, 20, 12, 12, 0, "a");
    EXPECT_EQ(grey_values(img), std::vector<int>(32 * 32, 0));
    font_reopen(font.get(), kVera);
    draw_text(img.get(), font.get(), 2, 20, 12, 12, 0, "a");
    EXPECT_NE(grey_values(img), std::vector<int>(32 * 32, 0));
}

TEST(FontReopen, NullFontsAreIgnored) {
    font_reopen(nullptr, kVera);
    font_free(nullptr);
}

TEST(FontFree, FreesARecordWithoutAFace) { font_free(static_cast<Font*>(std::calloc(1, sizeof(Font)))); }
