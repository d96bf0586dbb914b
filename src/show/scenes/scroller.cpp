// The scroller. From second 23.2 to 71 of the scene its flat layer (scroller_layer.h) fills the screen. Before and
// after, the layer is drawn into a corner of the frame buffer, copied into a texture and shown on a sheet in a room
// of walls, film ribbons and tubes.
#include <GL/glu.h>

#include <cmath>

#include "show/scenes/angles.h"
#include "show/scenes/beams.h"
#include "show/scenes/greetings.h"
#include "show/scenes/letterbox.h"
#include "show/scenes/ribbon.h"
#include "show/scenes/scene_setup.h"
#include "show/scenes/scenes.h"
#include "show/scenes/scroller_layer.h"
#include "show/scenes/text_screen.h"
#include "show/stage/overlay.h"
#include "show/stage/render_state.h"
#include "show/stage/show_time.h"

namespace {

unsigned tex_feedback; // the layer, 512 by 512 pixels; copied in every frame that shows the room
unsigned sheet_list;   // display list of the sheet

int g_scroller_starts;       // number of starts so far
float g_scroller_start_time; // seconds of show time at the first start

// --- The sheet ---

// Depth of the sheet q cells from the start of the curl at its left or right edge.
double edge_curl(int q) { return -20 * std::sin(q * q * kWave); }

// Issues a cell of the sheet, whose depth goes from z0 at its left to z1 at its right. The left edge curls over four
// cells, the right one over six; the first cell of the right curl does not quite meet its neighbour. Intentional.
void draw_sheet_cell(int i, int j) {
    const int column = i + 20;
    double z0 = 0, z1 = 0;
    if (column <= 3) {
        z0 = edge_curl(column - 4);
        z1 = edge_curl(column - 3);
    } else if (column >= 34) {
        z0 = edge_curl(column - 35);
        z1 = edge_curl(column - 34);
    }
    const double s0 = column * 0.025, s1 = (column + 1) * 0.025;
    const double t0 = (j + 20) * 0.025, t1 = (j + 21) * 0.025;
    glTexCoord2d(s0, t0);
    glVertex3d(i, j, z0);
    glTexCoord2d(s1, t0);
    glVertex3d(i + 1, j, z1);
    glTexCoord2d(s1, t1);
    glVertex3d(i + 1, j + 1, z1);
    glTexCoord2d(s0, t1);
    glVertex3d(i, j + 1, z0);
}

unsigned make_sheet() {
    const unsigned list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    glRotatef(180.0f, 0.0f, 0.0f, 1.0f);
    glBegin(GL_QUADS);
    for (int j = -20; j < 20; ++j) {
        for (int i = -20; i < 20; ++i) draw_sheet_cell(i, j);
    }
    glEnd();
    glEndList();
    return list;
}

// The texture has no image until the first copy from the frame buffer.
unsigned make_feedback_texture() {
    unsigned texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    return texture;
}

// --- The room ---

// Draws the layer into the lower left corner of the frame buffer and copies it into tex_feedback.
void copy_layer(float t) {
    glViewport(0, 0, 512, 512);
    draw_scroller_layer(t);
    glFlush();
    glBindTexture(GL_TEXTURE_2D, tex_feedback);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 512, 512, 0);
    set_picture_viewport();
    glLoadIdentity();
}

// Sets the view at scene time t (seconds): forwards until second 13, back from second 71.
void scroller_camera(float t) {
    if (t < 13) {
        glTranslated(0, 0, 30.0 * t - 420);
    } else if (t < 71) {
        glTranslated(0, 0, -30);
    }
    if (t >= 71) glTranslated(0, 0, -30 - 5.0 * (t - 71.0));
    if (g_scroller_starts == 1 || g_scroller_starts == 2) look_at_origin();
}

// Draws a ribbon of 80 cells about the y axis; neighbouring cells share their points.
void draw_film_ribbon(int offset) {
    const auto point = [offset](int m) { return ribbon_point((m + offset) * (100 * kWave), 1.78 * m); };
    RibbonPoint p0 = point(0);
    RibbonPoint p1 = point(1);
    RibbonPoint edge0 = ribbon_edge(p0, p1);
    glBegin(GL_QUADS);
    for (int n = 0; n < 80; ++n) {
        const RibbonPoint p2 = point(n + 2);
        const RibbonPoint edge1 = ribbon_edge(p1, p2);
        draw_ribbon_cell(p0, edge0, p1, edge1);
        p0 = p1;
        p1 = p2;
        edge0 = edge1;
    }
    glEnd();
}

void draw_ribbon_pair() {
    glPushMatrix();
    glTranslated(0, 80, -20);
    // By show time: the rotation continues across the scene's starts.
    glRotatef(static_cast<float>(g_demo_time * 300), 0.0f, 1.0f, 0.0f);
    glScaled(3, 3, 3);
    draw_film_ribbon(0);
    draw_film_ribbon(18);
    glPopMatrix();
}

void draw_film_ribbons() {
    glPushMatrix();
    glRotatef(90.0f, 0.0f, 0.0f, 1.0f);
    glEnable(GL_BLEND);
    blend_alpha();
    set_white(1);
    glBindTexture(GL_TEXTURE_2D, tex_ribbon);
    draw_ribbon_pair();
    glRotatef(180.0f, 0.0f, 0.0f, 1.0f);
    draw_ribbon_pair();
    glPopMatrix();
}

// Draws a row of 20 glowing pieces along z.
void draw_tube_row() {
    glRotatef(90.0f, 0.0f, 0.0f, -1.0f);
    set_up_beam(GLU_INSIDE, tex_beam);
    for (int i = 0; i < 20; ++i) draw_glowing_piece(i);
}

// Draws a row to the right and one to the left, along the axes of the film ribbons.
void draw_tube_rows() {
    for (int side = 1; side >= -1; side -= 2) {
        glPushMatrix();
        glRotatef(90.0f, 0.0f, static_cast<float>(side), 0.0f);
        glTranslated(20 * side, 0, 80);
        glScaled(3, 3, 3);
        draw_tube_row();
        glPopMatrix();
    }
}

void draw_wall_box(double x, double y, double z, double depth) {
    glPushMatrix();
    glTranslated(x, y, z);
    glScaled(12, 30, depth);
    glCallList(box_list);
    glPopMatrix();
}

constexpr int kWallColumns = 20;

// How far the boxes of each column stand out of floor and ceiling, in units; filled by scroller_prepare.
double g_swell[kWallColumns];

void make_swells() {
    for (int column = 0; column < kWallColumns; ++column) {
        g_swell[column] = 20 * std::sin(column * kBlockWave) + 2;
    }
}

// Draws floor and ceiling of boxes; those in the middle leave space for the sheet.
void draw_walls() {
    glPushMatrix();
    glDisable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, tex_wall);
    glRotatef(90.0f, -1.0f, 0.0f, 0.0f);
    glTranslated(-12, 0, -50);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    set_white(1);
    for (int row = 0; row < 11; ++row) {
        for (int column = 0; column < kWallColumns; ++column) {
            const double x = -108 + 12 * column;
            const double y = 30 * row;
            const double depth = column > 4 && column < 15 && row != 10 ? 25 : 70;
            const double swell = g_swell[column];
            draw_wall_box(x, y, -20 - swell, depth + swell);
            draw_wall_box(x, y, 120 - depth, depth + swell);
        }
    }
    glDisable(GL_CULL_FACE);
    glPopMatrix();
}

// Draws the sheet with the layer on it.
void draw_sheet() {
    glBindTexture(GL_TEXTURE_2D, tex_feedback);
    glEnable(GL_BLEND);
    blend_alpha();
    set_white(0.8);
    glPushMatrix();
    glTranslated(0, 0, 2);
    glRotatef(180.0f, 0.0f, 0.0f, 1.0f);
    glScaled(2.9, 2.2, 3);
    glCallList(sheet_list);
    glPopMatrix();
    glDisable(GL_BLEND);
}

// Draws the picture of the text screen, which fades out within three seconds.
void draw_fading_text_screen(float t) {
    const double a = 1 - t / 3.0;
    if (!(a > 0)) return;
    const float alpha = static_cast<float>(a);
    glLoadIdentity();
    set_render_state(kDepthTest | kLighting | kTexture);
    begin_2d();
    glEnable(GL_TEXTURE_2D);
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glDepthMask(GL_FALSE);
    glTranslated(-100, 0, 0);
    glDisable(GL_TEXTURE_2D);
    blend_alpha();
    glColor4f(0.5f, 0.5f, 0.5f, alpha);
    draw_backdrop_quad();
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, tex_panel);
    glColor4f(2.0f, 2.0f, 2.0f, alpha);
    draw_panel_quad();
    end_2d();
    glDepthMask(GL_TRUE);
    glEnable(GL_LIGHTING);
}

void draw_room(float t) {
    scroller_camera(t);
    set_render_state(kDepthTest | kLighting | kTexture);
    glClearColor(0.5f, 0.5f, 0.5f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    draw_film_ribbons();
    draw_tube_rows();
    draw_walls();
    draw_sheet();
    draw_fading_text_screen(t);
    draw_letterbox();
}

} // namespace

void scroller_prepare() {
    tex_feedback = make_feedback_texture();
    sheet_list = make_sheet();
    prepare_scroller_layer();
    make_swells();
}

void scroller_start() {
    g_scroller_starts += 1;
    set_up_lights();
    set_up_projection();
    set_up_fog(100.0f, 600.0f);
    // A later start does not reset the scene's time.
    if (g_scroller_starts == 1) g_scroller_start_time = static_cast<float>(g_demo_time);
}

void scroller_render() {
    const float t = static_cast<float>(g_demo_time - g_scroller_start_time);
    if (t < 23.2 || t > 71) {
        copy_layer(t);
        draw_room(t);
    } else {
        set_full_viewport(); // stays set: no bars
        draw_scroller_layer(t);
    }
}

void scroller_stop() {}
void scroller_release() {}
