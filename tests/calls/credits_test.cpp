#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "show/image/filters.h"
#include "show/image/image.h"
#include "show/image/upload.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_test.h"

namespace {

// The page with the credit lines in the given font, and without the sign-off line.
void make_page(const char* credit_font) {
    Font* font = font_load("./Vera.ttf");
    Image* img = image_create(800, 600, 1);
    image_fill(img, 0xFF000000);
    draw_text(img, font, 17, 185, 111, 55, -46, "..preselected");
    font_reopen(font, credit_font);
    draw_text(img, font, 37, 347, 49, 20, -46, "code_tazu");
    draw_text(img, font, 37, 370, 49, 20, -46, "music+vocals_<xr>");
    draw_text(img, font, 37, 393, 49, 20, -46, "toolcode_palo");
    draw_text(img, font, 37, 416, 49, 20, -46, "gfx_venk");
    image_rank(img, 1);
    image_levels(img, 7, 0, 65535, 65535, 0);
    image_upload(img, 1);
    image_free(img);
    font_free(font);
}

// Where the sign-off line stands, the dilation included. Its words are the makers' own.
bool is_sign_off(int x, int y) { return x >= 536 && y >= 578 && y <= 597; }

// Two pages, the sign-off line left out.
testing::AssertionResult same_page(const recording::Upload& actual, const recording::Upload& expected) {
    if (actual.width != 800 || actual.height != 600) return testing::AssertionFailure() << "another size";
    if (actual.format != GL_LUMINANCE) return testing::AssertionFailure() << "another format";
    for (int y = 0; y < 600; ++y) {
        for (int x = 0; x < 800; ++x) {
            const size_t i = static_cast<size_t>(y * 800 + x);
            if (is_sign_off(x, y) || actual.pixels[i] == expected.pixels[i]) continue;
            return testing::AssertionFailure() << "the pages differ at " << x << ", " << y;
        }
    }
    return testing::AssertionSuccess();
}

// Dark pixels of a part of the page.
int ink(const recording::Upload& page, int x0, int y0, int x1, int y1) {
    int dark = 0;
    for (int y = y0; y < y1; ++y) {
        for (int x = x0; x < x1; ++x) dark += page.pixels[static_cast<size_t>(y * 800 + x)] < 128;
    }
    return dark;
}

void start_calls() {
    const float black[4] = {0, 0, 0, 1};
    const float half[4] = {0.5f, 0.5f, 0.5f, 0.5f};
    const float half_opaque[4] = {0.5f, 0.5f, 0.5f, 1};
    const float position[4] = {0, 0, 2, 1};
    glLightfv(GL_LIGHT1, GL_AMBIENT, black);
    glLightfv(GL_LIGHT1, GL_DIFFUSE, half);
    glLightfv(GL_LIGHT1, GL_SPECULAR, half_opaque);
    glLightfv(GL_LIGHT1, GL_POSITION, position);
    glEnable(GL_LIGHT1);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(70.0, 1.3333333333333333, 0.1, 500.0);
    glMatrixMode(GL_MODELVIEW);
    GLUquadric* pipe = gluNewQuadric();
    gluQuadricNormals(pipe, GLU_SMOOTH);
    gluQuadricOrientation(pipe, GLU_OUTSIDE);
    gluQuadricTexture(pipe, GL_FALSE);
}

void draw_pipes(GLUquadric* pipe, double a) {
    const auto green_cylinder = [pipe, a] {
        glColor4f(0, 0.5f, 0, rounded(a));
        gluCylinder(pipe, 1, 1, 20, 100, 10);
    };
    const auto red_cylinder = [pipe, a] {
        glColor4f(0.5f, 0, 0, rounded(a));
        gluCylinder(pipe, 1, 1, 20, 100, 10);
    };
    glPushMatrix();
    glEnable(GL_LIGHTING);
    expected::look_at();
    glDepthMask(1);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(0, 0.5f, 0, rounded(a));
    glRotatef(45, 0, 1, 0);
    glTranslated(18, -16, 0);
    green_cylinder();
    glTranslated(-2, 0, 0);
    green_cylinder();
    glTranslated(-2, 0, 0);
    green_cylinder();
    glTranslated(1, 1.74, 0);
    red_cylinder();
    glTranslated(2, 0, 0);
    red_cylinder();
    glTranslated(-1, 1.74, 0);
    red_cylinder();
    glEnable(GL_TEXTURE_2D);
    glPopMatrix();
}

void draw_frame(unsigned page, GLUquadric* pipe, float t) {
    const double a = std::min(1.0, (t - 3.0) * 0.25);
    glLoadIdentity();
    set_render_state(7);
    glClearColor(1, 1, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    expected::bind(page);
    glDisable(GL_LIGHTING);
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glDepthMask(0);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(1, 1, 1, 1);
    expected::overlay_quad(0, 0, 1024, 768);
    end_2d();
    draw_pipes(pipe, a);
    glLoadIdentity();
    begin_2d();
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(1, 1, 1, rounded(1 - a));
    glDisable(GL_TEXTURE_2D);
    glBegin(GL_QUADS);
    glVertex3d(0, 384, 1);
    glVertex3d(0, 768, 1);
    glVertex3d(1024, 768, 1);
    glVertex3d(1024, 384, 1);
    glEnd();
    end_2d();
    expected::letterbox_bars();
}

class Credits : public SceneTest {
protected:
    Credits() : SceneTest(kCredits) {}

    void draw_expected(double time) override { draw_frame(names_.credits, pipe(), seconds_in(time)); }

    // The colour calls of a frame.
    recording::Log colours(double time) const { return recording::only(frame(time), "glColor4f"); }

private:
    // A stand-in for the quadric of the last start, which the host numbers alike.
    GLUquadric* pipe() const {
        const recording::GlModel now = recording::save_gl();
        recording::GlModel before = now;
        --before.next_quadric;
        recording::restore_gl(before);
        GLUquadric* quadric = nullptr;
        recording::calls_of([&quadric] { quadric = gluNewQuadric(); });
        recording::restore_gl(now);
        return quadric;
    }
};

} // namespace

TEST(CreditsPage, HasItsCreditLinesInTheFileNamedArial) {
    ASSERT_TRUE(has_font("./Vera.ttf"));
    ASSERT_TRUE(has_font("Arial"));
    const recording::GlModel before = recording::save_gl();
    const recording::Log expected = recording::calls_of([] { make_page("Arial"); });
    const recording::Upload page = recording::uploads().at(0);
    recording::restore_gl(before);
    EXPECT_TRUE(same_log(recording::calls_of(g_scenes[kCredits].prepare), expected));
    EXPECT_TRUE(same_page(recording::uploads().at(0), page));
}

TEST(CreditsPage, WithoutThatFileTheyStandInTheOtherFont) {
    WorkingFolder directory({"Vera.ttf"});
    g_scenes[kCredits].prepare();
    make_page("./Vera.ttf");
    ASSERT_EQ(recording::uploads().size(), 2u);
    EXPECT_TRUE(same_page(recording::uploads()[0], recording::uploads()[1]));
    EXPECT_GT(ink(recording::uploads()[0], 37, 330, 500, 420), 1000);
    EXPECT_GT(ink(recording::uploads()[0], 538, 580, 800, 594), 50);
}

TEST(CreditsPage, HasASignOffLineAtItsLowerRight) {
    g_scenes[kCredits].prepare();
    const recording::Upload& page = recording::uploads().at(0);
    EXPECT_GT(ink(page, 538, 580, 800, 594), 50);
    EXPECT_EQ(ink(page, 0, 560, 535, 600), 0);
    EXPECT_EQ(ink(page, 0, 598, 800, 600), 0);
}

TEST(CreditsPage, TheHeadingStandsAboveTheCoverAndEverythingElseUnderIt) {
    g_scenes[kCredits].prepare();
    const recording::Upload& page = recording::uploads().at(0);
    // the cover begins at half height
    EXPECT_GT(ink(page, 0, 100, 800, 220), 1000);
    EXPECT_EQ(ink(page, 0, 220, 800, 310), 0);
    EXPECT_GT(ink(page, 0, 310, 800, 600), 1000);
}

TEST(CreditsPage, WithoutAnyFontIsPlainWhite) {
    WorkingFolder empty({});
    g_scenes[kCredits].prepare();
    const std::vector<unsigned char> white(800 * 600, 255);
    EXPECT_EQ(recording::uploads().at(0).pixels, white);
}

TEST_F(Credits, StartSetsTheSecondLightProjectionAndANewQuadricEachTime) {
    EXPECT_TRUE(same_calls([this] { start(153.0); }, start_calls));
    EXPECT_TRUE(same_calls([this] { start(160.0); }, start_calls));
    EXPECT_EQ(recording::save_gl().next_quadric, 4); // the shared one and two more
}

TEST_F(Credits, TheFrameFadesThePipesInAndTheCoverOut) {
    start(153.0);
    expect_right_frames({153.0, 153.1, 154.7, 155.99, 156.0, 156.3, 158.0, 159.9, 160.0, 160.1, 161.9});
    for (float t : {std::nextafterf(7.0f, 0.0f), std::nextafterf(7.0f, 8.0f)}) { // around full strength
        EXPECT_TRUE(frame_is_right(153.0 + static_cast<double>(t))) << t;
    }
}

TEST_F(Credits, AStartThatSinglePrecisionRoundsIsCountedFromTheRoundedTime) {
    start(153.3);
    expect_right_frames({153.3, 155.2, 157.7});
}

TEST_F(Credits, BeforeTheThirdSecondTheCoverIsOpaqueAndThePipesInvisible) {
    start(153.0);
    const recording::Log at_start = colours(153.0);
    EXPECT_EQ(at_start.at(1), (recording::Call{"glColor4f", {0.0, 0.5, 0.0, -0.75}}));
    EXPECT_EQ(at_start.at(at_start.size() - 2), (recording::Call{"glColor4f", {1.0, 1.0, 1.0, 1.75}}));
    const recording::Log at_three = colours(156.0);
    EXPECT_EQ(at_three.at(at_three.size() - 2), (recording::Call{"glColor4f", {1.0, 1.0, 1.0, 1.0}}));
}

TEST_F(Credits, FromTheSeventhSecondOnTheCoverIsGone) {
    start(153.0);
    for (double time : {160.0, 161.5}) {
        const recording::Log calls = colours(time);
        EXPECT_EQ(calls.at(1), (recording::Call{"glColor4f", {0.0, 0.5, 0.0, 1.0}}));
        EXPECT_EQ(calls.at(calls.size() - 2), (recording::Call{"glColor4f", {1.0, 1.0, 1.0, 0.0}}));
    }
}

TEST_F(Credits, ASecondStartBeginsTheFadeAgainWithItsOwnQuadric) {
    start(153.0);
    EXPECT_TRUE(frame_is_right(159.0));
    start(160.0);
    EXPECT_TRUE(frame_is_right(160.0));
    EXPECT_TRUE(frame_is_right(161.0));
}
