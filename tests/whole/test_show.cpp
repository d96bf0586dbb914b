// A show of known colours in known places, set up as the real one is. $TEST_SHOW says what it does:
//
//   picture   draws the test picture, frame after frame (also without $TEST_SHOW)
//   stripes   draws white and black columns, one pixel wide
//   comb      draws a white column from 0.2 to 0.6 of every pixel: at twice the show's size white and black columns, at
//             its own size all white
//   busy      draws the test picture in one callback that swaps buffers for ever
//   error     draws the test picture and makes a request that the X server refuses
//   state     swaps buffers in all kinds of GL states; ends with status 0 if a swap changes nothing that GL
//             can be asked for, else with 1, and names on standard error what has changed
//   resizes   the same, with another size of the window before every swap: 1024x768 and 2048x1536 in turn; also checks
//             that the window shows the picture after each
//
// $TEST_RENDERER is what glGetString says GL's renderer is.
//
// Prints "reshape W H" for each size it is told, and "frame" for its first frame. With $TEST_SHOW_SECONDS it
// ends with status 7 at the first frame after that time.
#include <GL/glut.h>
#include <GL/glx.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "tests/whole/test_picture.h"

extern "C" const GLubyte* __real_glGetString(GLenum name);
extern "C" const GLubyte* __wrap_glGetString(GLenum name);

const GLubyte* __wrap_glGetString(GLenum name) {
    const char* renderer = std::getenv("TEST_RENDERER");
    if (name == GL_RENDERER && renderer) return reinterpret_cast<const GLubyte*>(renderer);
    return __real_glGetString(name);
}

namespace {

const std::chrono::steady_clock::time_point g_start = std::chrono::steady_clock::now();

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

void set_color(const Patch& patch) {
    glColor3ub(static_cast<GLubyte>(patch.red), static_cast<GLubyte>(patch.green),
               static_cast<GLubyte>(patch.blue));
}

// In pixels of the whole surface, at a depth of 0 (near) to 1 (far).
void fill(const Patch& patch, double depth = 0) {
    glBegin(GL_QUADS);
    glTexCoord2i(0, 0);
    glVertex3d(patch.x, patch.y, -depth);
    glTexCoord2i(1, 0);
    glVertex3d(patch.x + patch.width, patch.y, -depth);
    glTexCoord2i(1, 1);
    glVertex3d(patch.x + patch.width, patch.y + patch.height, -depth);
    glTexCoord2i(0, 1);
    glVertex3d(patch.x, patch.y + patch.height, -depth);
    glEnd();
}

void fill_viewport(double left, double right) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glRectd(left, -1, right, 1);
}

// Draws into the lower left corner, as the scenes that feed their picture back do, and reads it into a texture.
void read_back_corner(GLuint texture) {
    glViewport(0, 0, 512, 512);
    glClearColor(1, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    set_color(kReadBackLeft);
    fill_viewport(-1, 0);
    set_color(kReadBackRight);
    fill_viewport(0, 1);
    glFlush();
    glBindTexture(GL_TEXTURE_2D, texture);
    glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 512, 512, 0);
}

GLuint read_back_texture() {
    static GLuint texture = 0;
    if (texture == 0) {
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    }
    return texture;
}

void use_pixels() {
    glViewport(0, 0, kPictureWidth, kPictureHeight);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(0, kPictureWidth, 0, kPictureHeight, 0, 1);
}

void draw_picture() {
    read_back_corner(read_back_texture());

    glClearColor(0, 0, 1, 0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glViewport(kBand.x, kBand.y, kBand.width, kBand.height);
    set_color(kBand);
    fill_viewport(-1, 1);

    use_pixels();
    glColor3ub(255, 255, 255);
    glEnable(GL_TEXTURE_2D);
    fill({kReadBackLeft.x, kReadBackLeft.y, kReadBackLeft.width + kReadBackRight.width, kReadBackLeft.height,
          255, 255, 255});
    glDisable(GL_TEXTURE_2D);

    glEnable(GL_DEPTH_TEST);
    set_color(kNear);
    fill(kNear, 0.1);
    glColor3ub(0, 0, 0);
    fill(kNear, 0.9);
    glDisable(GL_DEPTH_TEST);

    for (const Patch& corner : kCorners) {
        set_color(corner);
        fill(corner);
    }
}

// White columns, `distance` pixels apart, from `left` to `right` behind each multiple of it.
void draw_columns(int distance, double left, double right) {
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
    use_pixels();
    glColor3ub(255, 255, 255);
    for (int x = 0; x < kPictureWidth; x += distance) glRectd(x + left, 0, x + right, kPictureHeight);
}

struct StateValue {
    const char* name;
    std::array<double, 16> values;
};

std::vector<StateValue> read_state() {
    std::vector<StateValue> state;
#define READ(name)                                                                                           \
    state.push_back({#name, {}});                                                                            \
    glGetDoublev(name, state.back().values.data())
    READ(GL_DRAW_FRAMEBUFFER_BINDING);
    READ(GL_READ_FRAMEBUFFER_BINDING);
    READ(GL_RENDERBUFFER_BINDING);
    READ(GL_DRAW_BUFFER);
    READ(GL_READ_BUFFER);
    READ(GL_VIEWPORT);
    READ(GL_SCISSOR_TEST);
    READ(GL_SCISSOR_BOX);
    READ(GL_POINT_SIZE);
    READ(GL_LINE_WIDTH);
    READ(GL_COLOR_CLEAR_VALUE);
    READ(GL_COLOR_WRITEMASK);
    READ(GL_DEPTH_WRITEMASK);
    READ(GL_DEPTH_CLEAR_VALUE);
    READ(GL_DEPTH_TEST);
    READ(GL_DEPTH_FUNC);
    READ(GL_STENCIL_TEST);
    READ(GL_STENCIL_FUNC);
    READ(GL_ALPHA_TEST);
    READ(GL_BLEND);
    READ(GL_BLEND_SRC);
    READ(GL_BLEND_DST);
    READ(GL_CULL_FACE);
    READ(GL_CULL_FACE_MODE);
    READ(GL_POLYGON_MODE);
    READ(GL_LIGHTING);
    READ(GL_FOG);
    READ(GL_FOG_COLOR);
    READ(GL_TEXTURE_2D);
    READ(GL_TEXTURE_BINDING_2D);
    READ(GL_ACTIVE_TEXTURE);
    READ(GL_MATRIX_MODE);
    READ(GL_MODELVIEW_MATRIX);
    READ(GL_PROJECTION_MATRIX);
    READ(GL_MODELVIEW_STACK_DEPTH);
    READ(GL_PROJECTION_STACK_DEPTH);
    READ(GL_ATTRIB_STACK_DEPTH);
    READ(GL_CLIENT_ATTRIB_STACK_DEPTH);
    READ(GL_CURRENT_COLOR);
    READ(GL_CURRENT_NORMAL);
    READ(GL_CURRENT_TEXTURE_COORDS);
    READ(GL_CURRENT_RASTER_POSITION);
    READ(GL_PACK_ALIGNMENT);
    READ(GL_UNPACK_ALIGNMENT);
    READ(GL_UNPACK_ROW_LENGTH);
    READ(GL_LIST_INDEX);
    READ(GL_CURRENT_PROGRAM);
#undef READ
    return state;
}

bool is_compiling_list() {
    GLint list = 0;
    glGetIntegerv(GL_LIST_INDEX, &list);
    return list != 0;
}

// Gives the window the other of its two sizes.
void resize_window() {
    static bool large = false;
    large = !large;
    Display* display = glXGetCurrentDisplay();
    XResizeWindow(display, glXGetCurrentDrawable(), large ? 2048 : 1024, large ? 1536 : 768);
    XSync(display, False);
}

// Whether the window shows the test picture, at points away from its edges.
bool window_shows_picture(const char* situation) {
    Display* display = glXGetCurrentDisplay();
    XWindowAttributes size = {};
    XGetWindowAttributes(display, glXGetCurrentDrawable(), &size);
    XImage* image = XGetImage(display, glXGetCurrentDrawable(), 0, 0, static_cast<unsigned>(size.width),
                              static_cast<unsigned>(size.height), AllPlanes, ZPixmap);
    bool right = true;
    for (int x = 4; x < kPictureWidth; x += 40) {
        for (int y = 8; y < kPictureHeight; y += 40) {
            const Patch patch = top_patch(x, y);
            const unsigned long found = XGetPixel(image, x * size.width / kPictureWidth,
                                                  (kPictureHeight - y) * size.height / kPictureHeight);
            const auto expected = static_cast<unsigned long>(patch.red << 16 | patch.green << 8 | patch.blue);
            if ((found & 0xffffff) == expected) continue;
            if (right) std::fprintf(stderr, "%s: at %d %d the window shows %06lx\n", situation, x, y, found);
            right = false;
        }
    }
    XDestroyImage(image);
    return right;
}

// Swaps buffers and returns whether the state is what it was. Swaps that follow one another closely may be
// left out; these must not be.
bool swap_keeps_state(const char* situation) {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const std::vector<StateValue> before = read_state();
    glutSwapBuffers();
    const std::vector<StateValue> after = read_state();
    bool kept = true;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i].values == after[i].values) continue;
        std::fprintf(stderr, "%s: a swap changes %s\n", situation, before[i].name);
        kept = false;
    }
    return kept;
}

// The same; with "resizes" in a window that changes before, and shows the picture after the next swap.
bool swaps_keep_state(const char* situation) {
    if (environment("TEST_SHOW") != "resizes" || is_compiling_list()) return swap_keeps_state(situation);
    resize_window();
    bool kept = swap_keeps_state(situation);
    kept &= swap_keeps_state(situation);
    return window_shows_picture(situation) & kept;
}

// Whether GL's state has that value.
bool has(GLenum name, const std::array<double, 4>& expected, const char* situation) {
    std::array<double, 4> found = {};
    glGetDoublev(name, found.data());
    if (found == expected) return true;
    std::fprintf(stderr, "%s: the value of 0x%x is not as it was set\n", situation, name);
    return false;
}

bool is(GLenum error, const char* situation) {
    const GLenum found = glGetError();
    if (found == error) return true;
    std::fprintf(stderr, "%s: GL's error is 0x%x and not 0x%x\n", situation, found, error);
    return false;
}

// Whether the picture that is read back has that colour at a pixel, y upwards.
bool has_pixel(int x, int y, const std::array<GLubyte, 3>& color) {
    std::array<GLubyte, 4> pixel = {};
    glReadPixels(x, y, 1, 1, GL_RGB, GL_UNSIGNED_BYTE, pixel.data());
    if (std::equal(color.begin(), color.end(), pixel.begin())) return true;
    std::fprintf(stderr, "the swaps change the picture at %d %d\n", x, y);
    return false;
}

bool swaps_keep_everything() {
    draw_picture();
    bool kept = has(GL_VIEWPORT, {0, 0, 1024, 768}, "as drawn");
    kept &= swaps_keep_state("plain");
    kept &= is(GL_NO_ERROR, "plain");

    glClearColor(0.25f, 0.5f, 0.75f, 1.0f);
    glColorMask(GL_FALSE, GL_TRUE, GL_FALSE, GL_TRUE);
    glEnable(GL_SCISSOR_TEST);
    glScissor(10, 20, 30, 40);
    glViewport(0, 76, 1024, 614);
    glPointSize(3);
    glLineWidth(5);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glRotated(30, 1, 2, 3);
    glColor4d(0.1, 0.2, 0.3, 0.4);
    kept &= swaps_keep_state("masked and scissored");
    kept &= is(GL_NO_ERROR, "masked and scissored");
    kept &= has(GL_VIEWPORT, {0, 76, 1024, 614}, "masked and scissored");
    kept &= has(GL_SCISSOR_BOX, {10, 20, 30, 40}, "masked and scissored");
    kept &= has(GL_POINT_SIZE, {3}, "masked and scissored");
    kept &= has(GL_LINE_WIDTH, {5}, "masked and scissored");

    glEnable(0x1702); // no capability
    kept &= swaps_keep_state("with an error pending");
    kept &= is(GL_INVALID_ENUM, "with an error pending");
    kept &= is(GL_NO_ERROR, "after a pending error");

    for (int i = 0; i < 64; ++i) glPushAttrib(GL_ALL_ATTRIB_BITS);
    kept &= is(GL_STACK_OVERFLOW, "with no room for attributes");
    kept &= swaps_keep_state("with no room for attributes");
    kept &= is(GL_NO_ERROR, "after no room for attributes");

    const GLuint list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    kept &= swaps_keep_state("while a display list is compiled");
    glEndList();
    glCallList(list);
    kept &= is(GL_NO_ERROR, "after a display list was compiled");

    // White in the corner, and blue beside it.
    kept &= has_pixel(14, 2, {255, 255, 255});
    kept &= has_pixel(20, 2, {0, 0, 255});
    return kept & is(GL_NO_ERROR, "at the end");
}

void end_after_time() {
    const std::string seconds = environment("TEST_SHOW_SECONDS");
    if (seconds.empty()) return;
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - g_start;
    if (elapsed.count() > std::stod(seconds)) std::exit(7);
}

void display() {
    static bool first = true;
    if (first) std::puts("frame");
    std::fflush(stdout);
    first = false;

    const std::string task = environment("TEST_SHOW");
    if (task == "state" || task == "resizes") std::exit(swaps_keep_everything() ? 0 : 1);
    if (task == "stripes") {
        draw_columns(2, 0, 1);
    } else if (task == "comb") {
        draw_columns(1, 0.2, 0.6);
    } else {
        draw_picture();
    }
    glFlush();
    glutSwapBuffers();
    while (task == "busy") glutSwapBuffers();
    if (task == "error") XMapWindow(glXGetCurrentDisplay(), None);
    end_after_time();
}

void reshape(int width, int height) {
    std::printf("reshape %d %d\n", width, height);
    std::fflush(stdout);
    glViewport(0, 0, width, height);
}

void idle() { glutPostRedisplay(); }

} // namespace

int main(int argc, char** argv) {
    glutInit(&argc, argv);
    glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH);
    glutInitWindowSize(1024, 768);
    glutInitWindowPosition(100, 100);
    glutGameModeString("1024x768:32@60");
    glutEnterGameMode();
    glViewport(0, 76, 1024, 614);
    glutReshapeFunc(reshape);
    glutIdleFunc(idle);
    glutDisplayFunc(display);
    glutMainLoop();
}
