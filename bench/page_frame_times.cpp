// CPU time of the page's frames without a driver: the show and its OpenGL on WebGL 2, whose driver functions do
// nothing. Prints a table of the scenes; to be run in the show's data folder.
//
// Times are milliseconds: `frame` is the median of a scene's frames, `longest` the longest of them; `draws` and `KiB`
// are what the driver gets in the last one. The first scene is slower: WebAssembly is still being compiled.
#include <GL/gl.h>
#include <GL/glext.h>
#include <GL/glut.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <type_traits>
#include <vector>

#include "hosts/common/sound_calls.h"
#include "hosts/page/gl/driver.h"
#include "hosts/page/gl/layer.h"

namespace {

constexpr int kRate = 20; // frames in a second of the show

struct Part {
    const char* name;
    double from, to; // seconds of music, without the transitions
};

constexpr Part kParts[] = {
    {"title", 1, 9},
    {"wall", 11, 33.5},
    {"room, pass 1", 34.5, 39.5},
    {"room, pass 2", 40.5, 45},
    {"room, pass 3", 46, 54.5},
    {"cross", 57, 67},
    {"text screen", 68, 73.5},
    {"scroller, sheet", 77.5, 96.5},
    {"scroller, layer", 97.5, 144.5},
    {"scroller, sheet again", 145.5, 152},
    {"credits", 153.5, 161},
};

page::gl::Driver g_driver;
std::size_t g_bytes; // given to the driver in the current frame
int g_draws;

void (*g_on_display)();
void (*g_on_reshape)(int width, int height);
bool g_playing = false;
int g_frame = 0;      // of the whole show
int g_song_frame = 0; // where the current file started

// Music that is only a position.
class SilentPlayer : public common::Player {
public:
    std::unique_ptr<common::Sound> open(const char*, FMOD_RESULT&) override {
        constexpr unsigned kMinutes = 60'000;
        return std::make_unique<common::Sound>(10 * kMinutes);
    }
    void play(common::Sound&, unsigned) override {
        g_playing = true;
        g_song_frame = g_frame;
    }
    void stop() override {}
    unsigned position_ms() override { return static_cast<unsigned>((g_frame - g_song_frame) * 1000 / kRate); }
    FMOD_RESULT seek_ms(unsigned) override { return FMOD_ERR_UNSUPPORTED; }
};

// A driver function that does nothing, of that type.
template <class Result, class... Parameters>
auto idle(Result (*)(Parameters...)) {
    return [](Parameters...) -> Result {
        if constexpr (!std::is_void_v<Result>) return 1;
    };
}

// The driver: it succeeds in everything, and counts.
void make_driver() {
#define IDLE(Result, name, parameters) g_driver.name = idle(g_driver.name);
    PAGE_GL_DRIVER_FUNCTIONS(IDLE)
#undef IDLE
    g_driver.CheckFramebufferStatus = [](GLenum) -> GLenum { return GL_FRAMEBUFFER_COMPLETE; };
    g_driver.GetIntegerv = [](GLenum, GLint* value) { *value = 4096; };
    g_driver.GetProgramiv = [](GLuint, GLenum, GLint* value) { *value = GL_TRUE; };
    g_driver.GenTextures = [](GLsizei count, GLuint* names) {
        static GLuint last = 0;
        for (GLsizei i = 0; i < count; ++i) names[i] = ++last;
    };
    g_driver.DrawElements = [](GLenum, GLsizei, GLenum, const void*) { ++g_draws; };
    g_driver.BufferData = [](GLenum, std::ptrdiff_t bytes, const void*, GLenum) {
        g_bytes += static_cast<std::size_t>(bytes);
    };
}

// Draws the current frame; its time in milliseconds.
double draw_frame() {
    using Clock = std::chrono::steady_clock;
    g_bytes = 0;
    g_draws = 0;
    const Clock::time_point begin = Clock::now();
    g_on_display();
    return std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
}

void measure(const Part& part) {
    for (; g_frame < part.from * kRate; ++g_frame) g_on_display();
    std::vector<double> times;
    for (; g_frame < part.to * kRate; ++g_frame) times.push_back(draw_frame());
    std::sort(times.begin(), times.end());
    std::printf("%-22s %8.2f %8.2f %8d %8.0f\n", part.name, times[times.size() / 2], times.back(), g_draws,
                static_cast<double>(g_bytes) / 1024);
    std::fflush(stdout);
}

} // namespace

std::unique_ptr<common::Player> common::make_player() { return std::make_unique<SilentPlayer>(); }

extern "C" {

void glutInit(int*, char**) {}
void glutInitDisplayMode(unsigned int) {}
void glutInitWindowPosition(int, int) {}
void glutInitWindowSize(int, int) {}
void glutGameModeString(const char*) {}

int glutEnterGameMode(void) {
    make_driver();
    if (!page::gl::start(g_driver, 1024, 768)) std::exit(EXIT_FAILURE);
    return 1;
}

void glutReshapeFunc(void (*callback)(int, int)) { g_on_reshape = callback; }
void glutIdleFunc(void (*)(void)) {}
void glutDisplayFunc(void (*callback)(void)) { g_on_display = callback; }
void glutPostRedisplay(void) {}
void glutSwapBuffers(void) { page::gl::present(); }

void glutMainLoop(void) {
    g_on_reshape(1024, 768);
    while (!g_playing) g_on_display(); // loading
    std::printf("\n%-22s %8s %8s %8s %8s\n", "scene", "frame", "longest", "draws", "KiB");
    for (const Part& part : kParts) measure(part);
    std::exit(EXIT_SUCCESS);
}

} // extern "C"
