#include <GL/glu.h>

#include <cmath>

#include "show/image/random.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"
#include "tests/calls/expected_layers.h"
#include "tests/calls/scene_test.h"

namespace {

void place_camera(int pass, double time) {
    switch (pass) {
    case 1:
        expected::look_at();
        glRotatef(70, -1, 0, 0);
        glTranslated(-100, 100, -100);
        glRotatef(rounded(-30 * time), 0, 0, 1);
        break;
    case 2:
        expected::look_at();
        glRotatef(70, -1, 0, 0);
        glTranslated(-100, 100, -100);
        glRotatef(rounded(-60 * time + 90), 0, 0, 1);
        break;
    case 3:
        expected::look_at();
        glRotatef(70, -1, 0, 0);
        glTranslated(-100, 100, 0);
        glRotatef(rounded(-60 * time), 1, 1, 1);
        break;
    default:
        break;
    }
}

void draw_slabs(unsigned wall) {
    const double k = 0.15915494327375637;
    glPushMatrix();
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    glDisable(GL_BLEND);
    expected::bind(wall);
    glTranslated(-120, -120, -40);
    glColor4f(1, 1, 1, 1);
    for (int i = 0; i <= 19; ++i) {
        for (int j = 0; j <= 19; ++j) {
            const double a = std::pow(std::sin(j * k) * 2.7, 2);
            const double b = std::pow(std::sin(i * k) * 2.7, 2);
            const double c = std::pow(std::cos(j * k) * 2.7, 2);
            const double d = std::pow(std::cos(i * k) * 2.7, 2);
            glPushMatrix();
            glScaled(6, 6, 3);
            draw_box(j, i, 5 - a - b, j + 1, i + 1, c + 1 + d);
            glTranslated(0, 0, 35);
            draw_box(j, i, -5 - c - d, j + 1, i + 1, 5 - c - d);
            glPopMatrix();
        }
    }
    glDisable(GL_CULL_FACE);
    glPopMatrix();
}

void draw_bar() {
    glTranslated(0, 0, -35);
    gluCylinder(g_quadric, 3, 3, 70, 200, 2);
}

void draw_cross(unsigned wall, int n, double time) {
    glPushMatrix();
    glEnable(GL_BLEND);
    glEnable(0x1702);
    glColor4f(1, 0, 0, 0.9f);
    gluQuadricNormals(g_quadric, GLU_SMOOTH);
    gluQuadricTexture(g_quadric, GL_TRUE);
    gluQuadricOrientation(g_quadric, GLU_OUTSIDE);
    glTranslated(-60, -60, 95);
    if (n % 2 == 1) {
        glRotated(time * 90, 0, 0, 1);
        glColor4f(1, 1, 1, 0.9f);
    }
    glPushMatrix();
    glRotated(90, 1, 0, 0);
    draw_bar();
    glPopMatrix();
    if ((n & 1) == 0) glColor4f(0, 0, 0, 0.9f);
    glPushMatrix();
    glRotatef(90, 1, 0, 0);
    glRotatef(90, 0, 1, 0);
    draw_bar();
    glPopMatrix();
    expected::bind(wall);
    glColor4f(1, 1, 1, 1);
    draw_box_centered(0, 0, 0, 15, 15, 15);
    glPopMatrix();
}

void draw_arm(unsigned beam) {
    glRotatef(180, 1, 0, 1);
    expected::beam_material(beam);
    for (int i = 0; i <= 199; ++i) {
        const int z = 40 * i - 40;
        if (z < -600) continue;
        if (z > 600) return;
        glPushMatrix();
        glTranslated(0, 0, 40 * i);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        gluCylinder(g_quadric, 0.3, 0.3, 40, 100, 1);
        glPopMatrix();
    }
}

void arm_colour(bool white) {
    if (white) {
        glColor4f(1, 1, 1, 0.5f);
    } else {
        glColor4f(1, 0, 0, 0.5f);
    }
}

void draw_arms(unsigned beam, int n) {
    const bool even = (n & 1) == 0;
    const bool odd = n % 2 == 1;
    glDepthMask(0);

    arm_colour(even);
    glPushMatrix();
    glTranslated(-50, -60, 5);
    draw_arm(beam);
    glPopMatrix();

    arm_colour(odd);
    glPushMatrix();
    glTranslated(-50, -60, 5);
    glRotatef(90, 0, 0, -1);
    draw_arm(beam);
    glPopMatrix();

    arm_colour(even);
    glPushMatrix();
    glTranslated(-50, -60, 5);
    glRotatef(180, 0, 0, -1);
    draw_arm(beam);
    glPopMatrix();

    arm_colour(odd);
    glPushMatrix();
    glTranslated(-50, -60, 5);
    glRotatef(270, 0, 0, -1);
    draw_arm(beam);
    glPopMatrix();
}

void draw_helices(unsigned ribbon, double time) {
    glPushMatrix();
    glTranslated(-50, -60, 5);
    glRotatef(90, 0, 0, -1);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(1, 1, 1, 1);
    expected::bind(ribbon);
    for (int i = 0; i < 4; ++i) {
        glPushMatrix();
        glRotatef(rounded(-(time * 100)), 0, 3, 0);
        expected::helix_strand(0.0f, 0);
        expected::helix_strand(18.0f, 0);
        glPopMatrix();
        glRotatef(90, 0, 0, -1);
    }
    glPopMatrix();
}

void draw_planes(unsigned beam) {
    glDisable(GL_CULL_FACE);
    expected::bind(beam);
    set_render_state(5);
    glEnable(GL_BLEND);
    glEnable(0x1702);
    glColor4f(1, 1, 1, 0.1f);
    glBlendFunc(GL_ALPHA, GL_SRC_ALPHA);
    glDepthMask(0);
    random_seed(20000);
    for (double z : {0.0, -9.0, -27.0, -54.0, -90.0}) {
        glBegin(GL_QUADS);
        expected::corner(0, 0, 500, -500, z);
        expected::corner(1, 0, -500, -500, z);
        expected::corner(1, 1, -500, 500, z);
        expected::corner(0, 1, 500, 500, z);
        glEnd();
    }
}

// The frame of a pass at a show time that lies in the n-th second since loading.
void draw_frame(const Names& names, int pass, int n, double time) {
    glLoadIdentity();
    set_render_state(7);
    place_camera(pass, time);
    glClearColor(0.5f, 0.5f, 0.5f, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_slabs(names.wall);
    draw_cross(names.wall, n, time);
    draw_arms(names.beam, n);
    draw_helices(names.ribbon, time);
    draw_planes(names.beam);
    glDepthMask(1);
    expected::caption(names.words, pass > 1 && pass < 4 ? 7 : -1);
    expected::letterbox();
}

class Cross : public SceneTest {
protected:
    Cross() : SceneTest(kCross, {kGreetings}) {}
    void draw_expected(double time) override { draw_frame(names_, pass(), second_, time); }

    // The cross changes every second since loading; the frame at `time` lies in that second.
    testing::AssertionResult frame_is_right(double time, int second) {
        second_ = second;
        return SceneTest::frame_is_right(time);
    }

private:
    int second_ = 0;
};

} // namespace

TEST_F(Cross, ThePassOneFrameHasNoCaption) {
    start_pass(1, 55.0);
    EXPECT_TRUE(frame_is_right(55.0, 55));
    EXPECT_TRUE(frame_is_right(55.7, 55));
    EXPECT_TRUE(frame_is_right(56.0, 56));
    EXPECT_TRUE(frame_is_right(56.49, 56));
}

TEST_F(Cross, ThePassTwoFrameTurnsTwiceAsFastAndShowsTheLastRow) {
    start_pass(2, 55.0);
    EXPECT_TRUE(frame_is_right(56.5, 56));
    EXPECT_TRUE(frame_is_right(57.25, 57));
    EXPECT_TRUE(frame_is_right(61.99, 61));
}

TEST_F(Cross, ThePassThreeFrameTumbles) {
    start_pass(3, 55.0);
    EXPECT_TRUE(frame_is_right(62.0, 62));
    EXPECT_TRUE(frame_is_right(63.1, 63));
    EXPECT_TRUE(frame_is_right(67.49, 67));
}

TEST_F(Cross, WithoutAStartOrAfterAFourthThereIsNoViewAndNoCaption) {
    EXPECT_TRUE(frame_is_right(50.0, 50));
    start_pass(4, 55.0);
    EXPECT_TRUE(frame_is_right(68.0, 68));
    EXPECT_EQ(recording::count(frame(68.0), "gluLookAt"), 0);
}

TEST_F(Cross, ChangesAtAWholeSecondOfSinglePrecisionTime) {
    start_pass(1, 55.0);
    const float before = std::nextafterf(56.0f, 0.0f);
    EXPECT_TRUE(frame_is_right(static_cast<double>(before), 55));
    EXPECT_EQ(recording::count(frame(static_cast<double>(before)), "glRotated"), 2); // it spins
    EXPECT_EQ(recording::count(frame(56.0), "glRotated"), 1);
    // so near to the second that single precision has reached it
    EXPECT_TRUE(frame_is_right(std::nextafter(56.0, 0.0), 56));
    EXPECT_TRUE(frame_is_right(57.0, 57));
}

TEST_F(Cross, OnOddSecondsBothBarsAreWhiteAndOnEvenOnesRedAndBlack) {
    start_pass(1, 55.0);
    const auto bars = [this](double time) {
        std::vector<recording::Call> colours;
        const recording::Log calls = frame(time);
        recording::Call colour;
        for (const recording::Call& call : calls) {
            if (call.name == "glColor4f") colour = call;
            if (call == recording::Call{"gluCylinder", {1.0, 3.0, 3.0, 70.0, 200.0, 2.0}}) {
                colours.push_back(colour);
            }
        }
        return colours;
    };
    const recording::Call white{"glColor4f", {1.0, 1.0, 1.0, 0.9f}};
    const recording::Call red{"glColor4f", {1.0, 0.0, 0.0, 0.9f}};
    const recording::Call black{"glColor4f", {0.0, 0.0, 0.0, 0.9f}};
    EXPECT_EQ(bars(55.5), (std::vector<recording::Call>{white, white}));
    EXPECT_EQ(bars(56.5), (std::vector<recording::Call>{red, black}));
}

TEST_F(Cross, TheBeatCountsFromLoading) {
    g_demo_time = 0.75;
    g_scenes[kCross].prepare();
    start_pass(1, 55.0);
    EXPECT_TRUE(frame_is_right(56.5, 55));
    EXPECT_TRUE(frame_is_right(56.75, 56));
    EXPECT_TRUE(frame_is_right(57.0, 56));
}

TEST_F(Cross, TheLoadingTimeIsKeptInSinglePrecision) {
    g_demo_time = 0.1; // narrowed to float it lies above 0.1
    g_scenes[kCross].prepare();
    start_pass(1, 55.0);
    EXPECT_TRUE(frame_is_right(0.1, 0));
    EXPECT_TRUE(frame_is_right(1.1, 1)); // 1.1 - 0.1f rounds to 1 in single precision
}

TEST_F(Cross, InANegativeOddSecondItNeitherSpinsNorTurnsBlack) {
    start_pass(1, 55.0);
    EXPECT_TRUE(frame_is_right(-1.5, -1));
    EXPECT_TRUE(frame_is_right(-0.5, 0)); // truncated, not rounded down
}

TEST_F(Cross, ItDrawsFromScrollHeightZeroWhateverTheGreetingsLeft) {
    leave_greetings_scrolled();
    start_pass(1, 55.0);
    EXPECT_TRUE(frame_is_right(55.0, 55));
}
