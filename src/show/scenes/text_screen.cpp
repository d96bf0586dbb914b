// The text screen: a grey backdrop and a panel of softly glowing text. Nothing moves.
#include "show/scenes/text_screen.h"

#include <GL/gl.h>

#include "show/image/image.h"
#include "show/scenes/letterbox.h"
#include "show/scenes/lettering.h"
#include "show/scenes/scene_setup.h"
#include "show/scenes/scenes.h"
#include "show/scenes/texture.h"
#include "show/stage/language.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"

unsigned tex_panel;

namespace {

// For a debugger; nothing reads them.
int g_text_screen_starts;
float g_text_screen_start_time; // seconds of show time at the last start

constexpr int kPanelLines = 5;

// German, English. The last three German lines are set narrower, so that the longest fits.
constexpr TextLine kPanel[2][kPanelLines] = {
    {
        {10, 191, 80, 99, -77, "laaangweilig..?"},
        {20, 277, 43, 43, -28, "du willst:"},
        {20, 327, 37, 43, -28, "keine Flybyes...?!"},
        {20, 374, 37, 43, -28, "keine Abstraktitaeten...?!"},
        {20, 425, 37, 43, -28, "oldskool...!!"},
    },
    {
        {10, 191, 80, 99, -77, "boooring..?"},
        {20, 277, 43, 43, -28, "you want:"},
        {20, 327, 43, 43, -28, "no more flybyes...?!"},
        {20, 374, 43, 43, -28, "no more abstracts...?!"},
        {20, 425, 43, 43, -28, "oldskool...!!"},
    },
};

// Draws the backdrop and the panel on it.
void draw_picture() {
    begin_2d();
    glDepthMask(GL_FALSE);
    glTranslated(-100, 0, 0); // left of the centre; intentional
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    blend_alpha();
    glColor4f(0.5f, 0.5f, 0.5f, 1.0f);
    draw_backdrop_quad();
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, tex_panel);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    draw_panel_quad();
    end_2d();
    glDepthMask(GL_TRUE);
}

} // namespace

void draw_backdrop_quad() { draw_flat(0, 0, 2048, 768); }

void draw_panel_quad() { draw_flat(256, 128, 768, 640); }

void text_screen_prepare() {
    const TextLine* lines = kPanel[g_english ? 1 : 0];
    Font* font = font_load("./Vera.ttf");
    Image* img = create_black(512, 512, kImageGrey);
    draw_text_line(img, font, lines[0]);
    font_reopen(font, "./Vera.ttf");
    for (int i = 1; i < kPanelLines; ++i) draw_text_line(img, font, lines[i]);
    make_text_glow(img);
    tex_panel = upload_and_free(img);
    font_free(font);
}

void text_screen_start() {
    g_text_screen_starts += 1;
    set_up_lights();
    set_up_projection();
    set_up_fog(100.0f, 600.0f);
    g_text_screen_start_time = static_cast<float>(g_demo_time);
}

void text_screen_render() {
    glLoadIdentity();
    set_render_state(kDepthTest | kLighting | kTexture);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_picture();
    draw_letterbox();
}

void text_screen_stop() {}
void text_screen_release() {}
