// The greetings: an endless wall of boxes rising through fog, light shafts before it, a red beam, a spinning double
// helix, and captions with names. Every start begins another pass, with its own camera and layers.
#include "show/scenes/greetings.h"

#include <GL/glu.h>

#include <cmath>

#include "show/image/filters.h"
#include "show/image/generators.h"
#include "show/image/image.h"
#include "show/image/random.h"
#include "show/image/upload.h"
#include "show/scenes/angles.h"
#include "show/scenes/beams.h"
#include "show/scenes/caption.h"
#include "show/scenes/letterbox.h"
#include "show/scenes/lettering.h"
#include "show/scenes/ribbon.h"
#include "show/scenes/scene_setup.h"
#include "show/scenes/scenes.h"
#include "show/scenes/texture.h"
#include "show/stage/render_state.h"
#include "show/stage/shapes.h"
#include "show/stage/show_time.h"
#include "show/text/text.h"

unsigned tex_wall;
unsigned tex_ribbon;
unsigned tex_beam;
unsigned tex_words;
unsigned box_list;
float g_scroll_y;

namespace {

unsigned tex_shaft; // a soft vertical streak of light

int g_greet_pass;         // number of starts so far
float g_greet_pass_start; // seconds of show time

// The layers that the frame draws; set by greetings_camera.
int g_greet_show_wall;
int g_greet_show_ribbon;
int g_greet_show_beam;

// --- Textures ---

// A grey tile with dark edges, slightly blurred and roughened with plasma.
unsigned make_wall_texture() {
    Image* plasma = image_create(256, 256, kImageGrey | kImageWrap);
    image_plasma(plasma, 4104, 1.0);
    Image* tile = image_create(256, 256, kImageGrey | kImageWrap);
    image_fill(tile, 0xff000095);
    image_line(tile, 0, 0, 255, 0, 0xff00004b);
    image_line(tile, 0, 255, 255, 255, 0xff000000);
    image_line(tile, 0, 0, 0, 255, 0xff000000);
    image_line(tile, 255, 0, 255, 255, 0xff000000);
    image_blur_directional(tile, 3, 0.0, 1.0, 1.0);
    image_blend(tile, plasma, kMixMultiply, 76);
    const unsigned texture = image_upload(tile, kTextureMipmapped);
    image_free(plasma);
    image_free(tile);
    return texture;
}

// A band with two glowing lines along its edges; the glow is also its alpha.
unsigned make_ribbon_texture() {
    Image* glow = create_black(256, 256, kImageGrey | kImageWrap);
    image_line(glow, 12, 0, 13, 255, 0xffffffff);
    image_line(glow, 242, 0, 242, 255, 0xffffffff);
    image_blur_h(glow, 19, 25.0);

    Image* band = image_create(256, 256, kImageGrey);
    image_fill(band, 0xffffffff);

    Image* middle = image_create_like(glow);
    image_fill(middle, 0xff000000);
    image_fill_rect(middle, 10, 0, 236, 256, 0xff959595);
    image_blend(glow, middle, kMixAdd, 244);

    image_fill_rect(band, 10, 0, 236, 256, 0xe95e5800);
    image_set_alpha(band, glow);
    image_blend(band, glow, kMixAdd, 256);
    const unsigned texture = image_upload(band, kTextureMipmapped);
    image_free(glow);
    image_free(band);
    image_free(middle);
    return texture;
}

unsigned make_beam_texture() {
    Image* img = image_create(256, 256, kImageGrey | kImageWrap);
    image_plasma(img, 32768, 0.67);
    return upload_and_free(img);
}

// A vertical line, blurred far to both sides.
unsigned make_shaft_texture() {
    Image* img = create_black(128, 256, kImageGrey);
    image_line(img, 64, 0, 64, 255, 0xffffffff);
    image_blur_h(img, 63, 85.0);
    return upload_and_free(img);
}

// One line in each row of 64 pixels: four for this scene, three for the gyroscope room and one for the cross.
constexpr TextLine kWordLines[] = {
    {6, 37, 80, 32, -48, "kOLTVARE"},   {1, 96, 69, 32, -48, "nolts varimeer"},
    {1, 160, 92, 32, -39, "skrelmunt"}, {0, 224, 111, 32, -37, "froskets"},
    {1, 288, 154, 32, -37, "ulvan"},    {1, 352, 92, 32, -37, "tindelwok"},
    {1, 416, 130, 32, -37, "gravnik"},  {1, 480, 66, 32, 0, "rolm @ pYX05"},
};

unsigned make_words_texture() {
    Font* font = font_load("./Vera.ttf");
    Image* img = create_black(512, 512, kImageGrey);
    for (const TextLine& line : kWordLines) draw_text_line(img, font, line);
    make_text_glow(img);
    const unsigned texture = upload_and_free(img);
    font_free(font);
    return texture;
}

// --- The wall ---

constexpr int kRows = 600;
constexpr int kBoxesInRow = 20;

// How far the boxes of each column bulge out of the wall, in units; filled by greetings_prepare.
double g_bulge[kBoxesInRow];

void make_bulge() {
    for (int j = 0; j < kBoxesInRow; ++j) {
        g_bulge[j] = std::pow(std::cos(j * kBlockWave) * 3.3, 4.0);
    }
}

// Draws a row of boxes side by side, 12 wide and h high, with their tops at y. Depths are random in 0..4, plus the
// bulge of the column.
void draw_row(double y, double h) {
    random_seed(static_cast<unsigned>(y));
    double x = -120;
    for (int j = 0; j < kBoxesInRow; ++j) {
        x += 12;
        const double depth = random_next() * 0x1p-30 - 2.0 + 2.0 + g_bulge[j];
        glPushMatrix();
        glTranslated(x, y - h, -20);
        glScaled(12, h, depth);
        glCallList(box_list);
        glPopMatrix();
    }
}

// Draws the rows within 600 units of g_scroll_y. The translation is not pushed: the following layers use it too.
void draw_wall() {
    glDisable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, tex_wall);
    glTranslated(0, -g_scroll_y, 0);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_FRONT);
    glColor3f(1.0f, 1.0f, 1.0f);
    double y = 0;
    for (int i = 0; i < kRows; ++i) {
        random_seed(2000); // again for every row: all have the same height (within 10..42). Intentional.
        const double h = random_next() * 0x1p-27 - 20 + 30;
        y += h;
        if (y < g_scroll_y - 600.0) continue;
        if (y > g_scroll_y + 600.0) break;
        draw_row(y, h);
    }
}

// Draws five sheets of light, one behind the other, each of segments 100 units high.
void draw_shafts() {
    glDisable(GL_CULL_FACE);
    glBindTexture(GL_TEXTURE_2D, tex_shaft);
    set_render_state(kDepthTest | kTexture);
    glEnable(GL_BLEND);
    glColor4f(1.0f, 1.0f, 1.0f, 0.1f);
    glBlendFunc(GL_ALPHA,
                GL_SRC_ALPHA); // GL rejects GL_ALPHA and keeps the function set before. Intentional.
    glDepthMask(GL_FALSE);
    random_seed(20000); // no number is drawn
    for (int i = 0; i < 5; ++i) {
        const double z = 2 * i - 10;
        for (int j = 0; j < 50; ++j) {
            const double top = 100 * j + 100;
            const double bottom = 100 * j;
            if (top < g_scroll_y - 600.0) continue;
            if (top > g_scroll_y + 600.0) break;
            glBegin(GL_QUADS);
            glTexCoord2d(0, 0);
            glVertex3d(50, top, z);
            glTexCoord2d(1, 0);
            glVertex3d(-50, top, z);
            glTexCoord2d(1, 1);
            glVertex3d(-50, bottom, z);
            glTexCoord2d(0, 1);
            glVertex3d(50, bottom, z);
            glEnd();
        }
    }
}

// --- The double helix ---

constexpr double kPitch = 1.78; // from one step to the next, upwards

struct HelixCell {
    RibbonPoint p0, edge0, p1, edge1; // as draw_ribbon_cell takes them
};

// The cells of a strand that are drawn: the steps from 500 units below `scroll_y` to 600 above it.
struct Strand {
    float scroll_y;
    int count;
    HelixCell cells[static_cast<int>(1100 / kPitch) + 3];
};

// Neighbouring cells share a point and the vector across the ribbon there, unless their two sums for its height round
// differently.
void make_strand(float phase, float scroll_y, Strand& strand) {
    constexpr int kSteps = 40000;
    const double low = scroll_y - 500.0;
    const double high = scroll_y + 600.0;
    const auto point = [phase](int step, double y) {
        return ribbon_point((static_cast<double>(phase) + step) * 100 * kWave, y);
    };

    // Starts just below the first step to draw and moves up to it.
    int i = low > kPitch ? static_cast<int>(low / kPitch) - 1 : 0;
    while (static_cast<float>(kPitch * i) < low) ++i;

    strand.scroll_y = scroll_y;
    strand.count = 0;
    RibbonPoint p0 = point(i, kPitch * i);
    RibbonPoint p1 = point(i + 1, kPitch * i + kPitch);
    RibbonPoint edge0 = ribbon_edge(p0, p1);
    for (; i < kSteps && p0.y <= high; ++i) {
        const RibbonPoint p2 = point(i + 2, kPitch * (i + 1) + kPitch);
        const RibbonPoint edge1 = ribbon_edge(p1, p2);
        strand.cells[strand.count++] = {p0, edge0, p1, edge1};
        p0 = p1;
        p1 = p2;
        edge0 = edge1;
        const float y = static_cast<float>(kPitch * (i + 1));
        if (p0.y != y) {
            p0.y = y;
            edge0 = ribbon_edge(p0, p1);
        }
    }
}

// The strand with that phase, 0 or 18 steps. Other scenes draw both several times in every frame, and always with the
// same g_scroll_y: they are made only when that has changed.
const Strand& strand_of(float phase) {
    static Strand strands[2];
    Strand& strand = strands[phase == 0 ? 0 : 1];
    if (strand.count == 0 || strand.scroll_y != g_scroll_y) make_strand(phase, g_scroll_y, strand);
    return strand;
}

// --- The other layers ---

// Draws the red beam, upwards along y.
void draw_beam() {
    glPushMatrix();
    glDepthMask(GL_TRUE);
    glRotatef(90.0f, -1.0f, 0.0f, 0.0f);
    glTranslated(0, -10, 0);
    set_up_beam(GLU_OUTSIDE, tex_beam);
    draw_visible_pieces(g_scroll_y, draw_glowing_piece);
    glDepthMask(GL_FALSE);
    glPopMatrix();
}

// Draws both strands of the double helix.
void draw_ribbon() {
    glPushMatrix();
    glEnable(GL_BLEND);
    blend_alpha();
    glTranslated(0, -10, 10);
    // By show time: the rotation continues across the passes.
    glRotatef(static_cast<float>(-(g_demo_time * 300)), 0.0f, 1.0f, 0.0f);
    glColor4f(1.0f, 1.0f, 1.0f, 1.0f);
    glBindTexture(GL_TEXTURE_2D, tex_ribbon);
    glBegin(GL_QUADS);
    draw_helix_ribbon(0.0f);
    draw_helix_ribbon(18.0f);
    glEnd();
    glDepthMask(GL_TRUE);
    glPopMatrix();
}

// The row of the texture of words at time t of the pass. Only pass 3 shows captions; at the exact times between two
// rows there is none.
int caption_row(float t) {
    if (g_greet_pass != 3) return kNoCaption;
    if (t > 1.4 && t < 7.0) return 0;
    if (t > 7.0 && t < 13.0) return 1;
    if (t > 13.0 && t < 18.0) return 2;
    if (t > 18.0) return 3;
    return kNoCaption;
}

// --- The camera ---

void show_layers(int wall, int ribbon, int beam) {
    g_greet_show_wall = wall;
    g_greet_show_ribbon = ribbon;
    g_greet_show_beam = beam;
}

// Pass 1: beside the helix, 210 units above its lower end, over the title's white screen.
void camera_pass_1() {
    show_layers(0, 1, 0);
    glEnable(GL_BLEND);
    set_render_state(kDepthTest | kLighting | kTexture);
    glTranslated(30, -200, -30);
}

// Pass 2: from there towards the tilted view of pass 3, in 4 seconds; the pass ends shortly before. It clears
// nothing: the clear colour takes effect at the next clear of another scene.
void camera_pass_2(float t) {
    constexpr double kWay = 4.0; // seconds
    show_layers(0, 1, 1);
    const float grey = static_cast<float>(1 - (0.5 / kWay) * t);
    glClearColor(grey, grey, grey, 1.0f);
    glTranslated(30 - (30 / kWay) * t, (100 / kWay) * t - 100, (30 / kWay) * t - 30);
    glRotatef(static_cast<float>((60 / kWay) * t), -1.0f, 0.0f, 0.0f);
    glTranslated(0, -100, 0);
}

void clear_to_grey() {
    glClearColor(0.5f, 0.5f, 0.5f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

// Pass 3: upwards along the wall, slowly at first, then fast and rolling, then also pitching.
void camera_pass_3(float t) {
    show_layers(1, 1, 1);
    clear_to_grey();
    glRotatef(60.0f, -1.0f, 0.0f, 0.0f);
    g_scroll_y = static_cast<float>(20.0 * t + 100);
    if (t > 1.4) {
        g_scroll_y = static_cast<float>(200.0 * t + 100);
        glRotatef(static_cast<float>(std::sin((1.4 - t) * 0.21220659103167516) * 90), 0.0f, 0.2f, 1.0f);
    }
    if (t > 7.0) {
        glRotatef(static_cast<float>(std::sin((7.0 - t) * 0.2829421213755669) * 90), 0.0f, 0.2f, 1.0f);
        glRotatef(static_cast<float>(std::sin((7.0 - t) * 0.03536776517194586) * 45), 1.0f, 0.0f, 0.0f);
    }
}

// Pass 4: does not occur in the running order.
void camera_pass_4() {
    show_layers(0, 1, 1);
    clear_to_grey();
    glRotatef(60.0f, -1.0f, 0.0f, 0.0f);
}

// Sets the view and the layers of the current pass at its time t (seconds).
void greetings_camera(float t) {
    switch (g_greet_pass) {
    case 1:
        camera_pass_1();
        return;
    case 2:
        camera_pass_2(t);
        return;
    case 3:
        camera_pass_3(t);
        return;
    case 4:
        camera_pass_4();
        return;
    }
}

} // namespace

void draw_helix_ribbon(float phase) {
    const Strand& strand = strand_of(phase);
    for (const HelixCell *cell = strand.cells, *end = cell + strand.count; cell < end; ++cell)
        draw_ribbon_cell(cell->p0, cell->edge0, cell->p1, cell->edge1);
}

void greetings_prepare() {
    tex_wall = make_wall_texture();
    tex_ribbon = make_ribbon_texture();
    tex_beam = make_beam_texture();
    tex_shaft = make_shaft_texture();
    tex_words = make_words_texture();
    box_list = glGenLists(1);
    glNewList(box_list, GL_COMPILE);
    draw_box(0, 0, 0, 1, 1, 1);
    glEndList();
    make_bulge();
}

void greetings_start() {
    g_greet_pass += 1;
    set_up_lights();
    set_up_projection();
    set_up_fog(0.0f, 400.0f);
    g_scroll_y = 0;
    g_greet_pass_start = static_cast<float>(g_demo_time);
}

void greetings_render() {
    // Counted from the frame that started the pass, in single precision. g_scene_time counts from the cue.
    const float t = static_cast<float>(g_demo_time - g_greet_pass_start);
    glLoadIdentity();
    set_render_state(kDepthTest | kLighting | kTexture);
    look_at_origin();
    greetings_camera(t);
    glEnable(GL_TEXTURE_2D);
    if (g_greet_show_wall == 1) {
        draw_wall();
        draw_shafts();
    }
    if (g_greet_show_beam == 1) draw_beam();
    if (g_greet_show_ribbon == 1) draw_ribbon();
    draw_caption(tex_words, caption_row(t));
    glDepthMask(GL_TRUE);
    draw_letterbox();
}

void greetings_stop() {}
void greetings_release() {}
