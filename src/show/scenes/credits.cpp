// The credits: a white page of text behind a pyramid of translucent pipes. Between seconds 3 and 7 a white cover over
// the lower half fades out and the pipes fade in.
#include <GL/glu.h>

#include <algorithm>

#include "show/image/filters.h"
#include "show/image/image.h"
#include "show/scenes/letterbox.h"
#include "show/scenes/lettering.h"
#include "show/scenes/scene_setup.h"
#include "show/scenes/scenes.h"
#include "show/scenes/texture.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"

namespace {

unsigned tex_credits;
GLUquadric* g_pipe_quadric; // a new one at every start, never deleted
float g_credits_start_time; // seconds of show time at the last start

// --- The page ---

constexpr TextLine kHeading = {17, 185, 111, 55, -46, "..preselected"};

constexpr TextLine kCreditLines[] = {
    {37, 347, 49, 20, -46, "code_tazu"},      {37, 370, 49, 20, -46, "music+vocals_<xr>"},
    {37, 393, 49, 20, -46, "toolcode_palo"},  {37, 416, 49, 20, -46, "gfx_venk"},
    {538, 592, 20, 10, -46, "pRANDIKS 2026"},
};

// Changes the font to the file "Arial". If it cannot be opened, the heading's font is used again.
void change_to_credits_font(Font* font) {
    font_reopen(font, "Arial");
    if (font && !font->face) font_reopen(font, "./Vera.ttf");
}

// Draws the text over the whole screen.
void draw_page() {
    glBindTexture(GL_TEXTURE_2D, tex_credits);
    glDisable(GL_LIGHTING);
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    blend_alpha();
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    draw_flat(0, 0, 1024, 768);
    end_2d();
}

// --- The pipes ---

struct Pipe {
    double dx, dy; // from the previous pipe, units
    float color[3];
};

// Three green pipes at the bottom, two red ones in their gaps, a red one on top.
constexpr Pipe kPipes[] = {
    {0, 0, {0.0f, 0.5f, 0.0f}},    {-2, 0, {0.0f, 0.5f, 0.0f}}, {-2, 0, {0.0f, 0.5f, 0.0f}},
    {1, 1.74, {0.5f, 0.0f, 0.0f}}, {2, 0, {0.5f, 0.0f, 0.0f}},  {-1, 1.74, {0.5f, 0.0f, 0.0f}},
};

void draw_pipes(float alpha) {
    glPushMatrix();
    glEnable(GL_LIGHTING);
    look_at_origin();
    glDepthMask(GL_TRUE);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(0.0f, 0.5f, 0.0f, alpha);
    glRotatef(45.0f, 0.0f, 1.0f, 0.0f);
    glTranslated(18, -16, 0);
    for (const Pipe& pipe : kPipes) {
        if (&pipe != kPipes) glTranslated(pipe.dx, pipe.dy, 0);
        glColor4f(pipe.color[0], pipe.color[1], pipe.color[2], alpha);
        gluCylinder(g_pipe_quadric, 1, 1, 20, 100, 10);
    }
    glEnable(GL_TEXTURE_2D);
    glPopMatrix();
}

// --- The cover ---

// Draws the white cover over the lower half of the screen.
void draw_cover(float alpha) {
    glLoadIdentity();
    begin_2d();
    glDisable(GL_LIGHTING);
    glDisable(GL_TEXTURE_2D);
    blend_alpha();
    glColor4f(1.0f, 1.0f, 1.0f, alpha);
    glDisable(GL_TEXTURE_2D);
    glBegin(GL_QUADS);
    glVertex3d(0, 384, 1);
    glVertex3d(0, 768, 1);
    glVertex3d(1024, 768, 1);
    glVertex3d(1024, 384, 1);
    glEnd();
    end_2d();
}

void set_up_pipe_light() {
    static constexpr float kAmbient[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    static constexpr float kDiffuse[4] = {0.5f, 0.5f, 0.5f, 0.5f};
    static constexpr float kSpecular[4] = {0.5f, 0.5f, 0.5f, 1.0f};
    static constexpr float kPosition[4] = {0.0f, 0.0f, 2.0f, 1.0f};
    glLightfv(GL_LIGHT1, GL_AMBIENT, kAmbient);
    glLightfv(GL_LIGHT1, GL_DIFFUSE, kDiffuse);
    glLightfv(GL_LIGHT1, GL_SPECULAR, kSpecular);
    glLightfv(GL_LIGHT1, GL_POSITION, kPosition);
    glEnable(GL_LIGHT1);
}

} // namespace

void credits_prepare() {
    Font* font = font_load("./Vera.ttf");
    Image* img = create_black(800, 600, kImageGrey);
    draw_text_line(img, font, kHeading);
    change_to_credits_font(font);
    for (const TextLine& line : kCreditLines) draw_text_line(img, font, line);
    image_rank(img, 1);
    invert(img); // black on white
    tex_credits = upload_and_free(img);
    font_free(font);
}

// Light 0 and the fog stay as the earlier scenes set them.
void credits_start() {
    set_up_pipe_light();
    set_up_projection();
    g_pipe_quadric = gluNewQuadric();
    gluQuadricNormals(g_pipe_quadric, GLU_SMOOTH);
    gluQuadricOrientation(g_pipe_quadric, GLU_OUTSIDE);
    gluQuadricTexture(g_pipe_quadric, GL_FALSE);
    g_credits_start_time = static_cast<float>(g_demo_time);
}

void credits_render() {
    const float t = static_cast<float>(g_demo_time - g_credits_start_time);
    // Below 0 until second 3: the cover's alpha is then above 1 and that of the pipes below 0; GL clamps both.
    const double fade = std::min((t - 3.0) * 0.25, 1.0);
    glLoadIdentity();
    set_render_state(kDepthTest | kLighting | kTexture);
    glClearColor(1.0f, 1.0f, 1.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_page();
    draw_pipes(static_cast<float>(fade));
    draw_cover(static_cast<float>(1.0 - fade));
    draw_letterbox();
}

void credits_stop() {}
void credits_release() {}
