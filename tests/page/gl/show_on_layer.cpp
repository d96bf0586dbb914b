// The whole show, its GL calls drawn by the layer off the screen on a clock of ten frames a second, for stills. Takes
// the options with which the picture tests call skav-export, and writes the same files:
//
//     show-on-layer --quiet --data FOLDER --language en|de --fps 10 --still TIME... -o FOLDER/
//
// Times are in seconds, ascending; "loading" is the loading picture.
#include <GL/glut.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "hosts/common/sound_calls.h"
#include "hosts/page/gl/layer.h"
#include "tests/page/gl/egl_context.h"
#include "tests/support/picture.h"

namespace fs = std::filesystem;

extern "C" int __wrap_main(int argc, char** argv);
extern "C" int __real_main(int argc, char** argv);

namespace {

constexpr int kRate = 10; // frames a second
constexpr int kNoFrame = -1;

constexpr int kWidth = 1024, kHeight = 768;

std::string g_folder;             // with its slash
std::vector<std::string> g_times; // those still to come
std::unique_ptr<EglContext> g_context;
page::gl::Driver g_driver;

void (*g_on_display)();
void (*g_on_idle)();
void (*g_on_reshape)(int width, int height);

int g_frame = kNoFrame; // counted from the start of the music
bool g_playing = false;
bool g_skipping = false; // nothing is drawn in this frame

double time_of(const std::string& still) { return std::strtod(still.c_str(), nullptr); }

// The next wanted frame. At second 74, where the music changes, show time jumps forward by 0.3 seconds.
int next_wanted() {
    if (g_times.front() == "loading") return kNoFrame;
    const double time = time_of(g_times.front());
    return static_cast<int>(std::lround((time < 74.3 ? time : time - 0.3) * kRate));
}

void take_picture() {
    page::gl::finish();
    Rgb picture{kWidth, kHeight, {}};
    const std::size_t row = static_cast<std::size_t>(picture.width) * 4;
    std::vector<std::uint8_t> pixels(row * static_cast<std::size_t>(picture.height));
    const auto read_pixels = reinterpret_cast<decltype(&glReadPixels)>(gl_function("glReadPixels"));
    read_pixels(0, 0, picture.width, picture.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
    for (std::size_t y = static_cast<std::size_t>(picture.height); y-- > 0;) {
        for (std::size_t x = 0; x < row; x += 4) {
            const std::uint8_t* pixel = &pixels[y * row + x];
            picture.pixels.insert(picture.pixels.end(), pixel, pixel + 3);
        }
    }
    char name[20] = "loading.png";
    if (g_frame != kNoFrame) std::snprintf(name, sizeof name, "%07.3f.png", time_of(g_times.front()));
    write_png_file(picture, g_folder + name);
    g_times.erase(g_times.begin());
    if (g_times.empty()) std::_Exit(EXIT_SUCCESS);
}

// Music that is only a position.
class SilentPlayer : public common::Player {
public:
    std::unique_ptr<common::Sound> open(const char*, FMOD_RESULT&) override {
        constexpr unsigned kMinutes = 60'000;
        return std::make_unique<common::Sound>(10 * kMinutes);
    }
    void play(common::Sound&, unsigned) override {
        g_playing = true;
        from_ = std::max(g_frame, 0);
    }
    void stop() override {}
    unsigned position_ms() override { return static_cast<unsigned>((g_frame - from_) * 1000 / kRate); }
    FMOD_RESULT seek_ms(unsigned) override { return FMOD_ERR_UNSUPPORTED; }

private:
    int from_ = 0;
};

// Calls the display callback. Only frames that are wanted are drawn: the driver's calls that write pixels are left
// out of the others.
void display() {
    const bool loading = !g_playing;
    g_skipping = !loading && g_frame != next_wanted();
    g_on_display();
    if (loading && !g_playing) return;
    if (loading) {
        if (next_wanted() == kNoFrame) take_picture();
        g_frame = 0;
        return;
    }
    page::gl::finish();
    ++g_frame;
}

// Gives the show the answer to its question for the language.
void answer(char letter) {
    int ends[2];
    if (pipe(ends) != 0 || write(ends[1], &letter, 1) != 1) std::exit(EXIT_FAILURE);
    close(ends[1]);
    dup2(ends[0], STDIN_FILENO);
}

} // namespace

std::unique_ptr<common::Player> common::make_player() { return std::make_unique<SilentPlayer>(); }

int __wrap_main(int argc, char** argv) {
    std::map<std::string, std::string> options;
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        if (name == "--quiet" || i + 1 == argc) continue;
        const std::string value = argv[++i];
        if (name == "--still") g_times.push_back(value);
        options[name] = value;
    }
    std::error_code error;
    fs::create_directories(options["-o"], error);
    if (g_times.empty() || error) {
        std::fprintf(stderr, "show-on-layer: --still TIME and -o FOLDER/ are needed\n");
        return EXIT_FAILURE;
    }
    g_folder = fs::absolute(options["-o"]).string();
    fs::current_path(options["--data"]);
    answer(options["--language"] == "en" ? 'e' : 'g');
    return __real_main(argc, argv);
}

extern "C" {

void FGAPIENTRY glutInit(int*, char**) {}
void FGAPIENTRY glutInitDisplayMode(unsigned int) {}
void FGAPIENTRY glutInitWindowPosition(int, int) {}
void FGAPIENTRY glutInitWindowSize(int, int) {}
void FGAPIENTRY glutGameModeString(const char*) {}

int FGAPIENTRY glutEnterGameMode(void) {
    g_context = std::make_unique<EglContext>(EglContext::Kind::es3);
    static page::gl::Driver native;
    native = g_driver = native_driver();
    g_driver.Clear = [](GLbitfield buffers) {
        if (!g_skipping) native.Clear(buffers);
    };
    g_driver.DrawElements = [](GLenum mode, GLsizei count, GLenum type, const void* indices) {
        if (!g_skipping) native.DrawElements(mode, count, type, indices);
    };
    if (!page::gl::start(g_driver, kWidth, kHeight)) std::exit(EXIT_FAILURE);
    return 1;
}

void FGAPIENTRY glutReshapeFunc(void (*callback)(int, int)) { g_on_reshape = callback; }
void FGAPIENTRY glutIdleFunc(void (*callback)(void)) { g_on_idle = callback; }
void FGAPIENTRY glutDisplayFunc(void (*callback)(void)) { g_on_display = callback; }
void FGAPIENTRY glutPostRedisplay(void) {}

void FGAPIENTRY glutSwapBuffers(void) {
    if (g_playing && g_frame == next_wanted()) take_picture();
}

void FGAPIENTRY glutMainLoop(void) {
    g_on_reshape(kWidth, kHeight);
    for (;;) {
        display();
        g_on_idle();
    }
}

} // extern "C"
