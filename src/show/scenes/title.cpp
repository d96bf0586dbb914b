// The title: black lettering on a white screen, faded out from second 6.
#include <GL/gl.h>

#include "show/image/filters.h"
#include "show/image/image.h"
#include "show/scenes/lettering.h"
#include "show/scenes/scenes.h"
#include "show/scenes/texture.h"
#include "show/stage/loading_screen.h"
#include "show/stage/overlay.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"

namespace {

unsigned title_texture;
double title_base_time; // seconds of show time that the title counts from

// In drawing order; the last one is the top line on the screen.
constexpr TextLine kTitleLines[] = {
    {0, 210, 108, 20, 0, "sKAV of"},
    {2, 240, 68, 20, 0, "pRANDIKS"},
    {15, 302, 49, 20, -56, "...and preselected"},
    {2, 160, 55, 12, -40, "in the"},
};

constexpr double kFadeStart = 6.0; // seconds

// Opacity of the lettering.
float title_alpha(float t) {
    if (t <= kFadeStart) return 1.0f;
    return static_cast<float>(1.0 - (t - kFadeStart) * 0.5); // below 0 after second 8; GL clamps it
}

// Draws the image at x 207 to 617 and y 256 to 512, without its outermost columns, so that the edges do not sample
// across the border.
void draw_lettering() {
    glTranslated(-100.0, 0.0, 0.0);
    glBegin(GL_QUADS);
    glTexCoord2d(0.001, 0);
    glVertex3i(307, 256, 1);
    glTexCoord2d(0.001, 1);
    glVertex3i(307, 512, 1);
    glTexCoord2d(0.999, 1);
    glVertex3i(717, 512, 1);
    glTexCoord2d(0.999, 0);
    glVertex3i(717, 256, 1);
    glEnd();
}

} // namespace

void title_prepare() {
    Font* font = font_load("./Vera.ttf");
    Image* img = create_black(512, 512, kImageGrey);
    for (const TextLine& line : kTitleLines) draw_text_line(img, font, line);
    image_levels(img, kPlaneGreen, 0, 65535, 65535, 0); // black on white
    image_rank(img, 0);                                 // the dark lettering grows by a pixel: a bolder face
    title_texture = upload_and_free(img);
    font_free(font);
    loading_step();
    // 0, as no scene has been rendered yet: the title runs by show time.
    title_base_time = g_scene_time;
}

void title_start() {}

// The title is the first scene of the frame: it blends with the function left by the frame before. Intentional.
void title_render() {
    const float t = static_cast<float>(g_demo_time - title_base_time);
    glClearColor(1, 1, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glLoadIdentity();
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, title_texture);
    glColor4f(1.0f, 1.0f, 1.0f, title_alpha(t));
    glEnable(GL_BLEND);
    glDisable(GL_LIGHTING);
    glDepthMask(GL_FALSE);
    draw_lettering();
    end_2d();
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
    end_2d(); // one push, two pops, as on the loading screen. Intentional.
}

void title_stop() {}
void title_release() {}
