#include "hosts/offscreen/drawing/egl_screen.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#define GL_GLEXT_PROTOTYPES
#include <GL/gl.h>
#include <GL/glext.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "hosts/offscreen/drawing/gl_calls.h"
#include "hosts/offscreen/failure.h"

namespace offscreen {

namespace {

bool lists(const char* extensions, const char* name) {
    return extensions && std::strstr(extensions, name) != nullptr;
}

// Displays to try, best first: the machine's devices, then Mesa without any device, then EGL's own choice.
std::vector<EGLDisplay> candidate_displays() {
    std::vector<EGLDisplay> displays;
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (lists(extensions, "EGL_EXT_device_enumeration") && lists(extensions, "EGL_EXT_platform_device")) {
        const auto query_devices =
            reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
        EGLDeviceEXT devices[16];
        EGLint count = 0;
        if (query_devices && query_devices(16, devices, &count)) {
            for (EGLint i = 0; i < count; ++i) {
                displays.push_back(eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, devices[i], nullptr));
            }
        }
    }
    if (lists(extensions, "EGL_MESA_platform_surfaceless")) {
        displays.push_back(
            eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    }
    displays.push_back(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    return displays;
}

// A compatibility context on `display`, current without a surface; null if the display has none.
EGLContext context_on(EGLDisplay display) {
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr)) return EGL_NO_CONTEXT;
    const char* extensions = eglQueryString(display, EGL_EXTENSIONS);
    EGLContext context = EGL_NO_CONTEXT;
    if (lists(extensions, "EGL_KHR_surfaceless_context") && eglBindAPI(EGL_OPENGL_API)) {
        const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, 0, EGL_NONE};
        EGLConfig config = nullptr;
        EGLint count = 0;
        if (eglChooseConfig(display, wanted, &config, 1, &count) && count == 1) {
            // No version asked for: the newest that still has all of OpenGL 1.
            context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
        }
        if (context != EGL_NO_CONTEXT && !eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context)) {
            eglDestroyContext(display, context);
            context = EGL_NO_CONTEXT;
        }
    }
    if (context == EGL_NO_CONTEXT) eglTerminate(display);
    return context;
}

} // namespace

EglScreen::EglScreen(int width, int height, int supersample) : width_(width), height_(height) {
    make_context();
    for (int multiple = supersample; multiple >= 1; multiple /= 2) {
        add_frame_buffer(width * multiple, height * multiple, multiple == supersample);
    }
    bind();
    set_viewport(width * supersample, height * supersample);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

EglScreen::~EglScreen() {
    for (const FrameBuffer& buffer : buffers_) {
        glDeleteFramebuffers(1, &buffer.name);
        glDeleteRenderbuffers(1, &buffer.color);
        glDeleteRenderbuffers(1, &buffer.depth);
    }
    // The display stays initialised: it belongs to the process, and terminating it would unload the driver.
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(display_, context_);
}

void EglScreen::resolve() const {
    const bool scissor = glIsEnabled(GL_SCISSOR_TEST);
    if (scissor) glDisable(GL_SCISSOR_TEST);
    for (std::size_t i = 1; i < buffers_.size(); ++i) {
        const FrameBuffer& from = buffers_[i - 1];
        const FrameBuffer& to = buffers_[i];
        glBindFramebuffer(GL_READ_FRAMEBUFFER, from.name);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, to.name);
        // Half the size: a linear filter takes the mean of exactly four pixels.
        glBlitFramebuffer(0, 0, from.width, from.height, 0, 0, to.width, to.height, GL_COLOR_BUFFER_BIT,
                          GL_LINEAR);
    }
    if (scissor) glEnable(GL_SCISSOR_TEST);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, buffers_.back().name);
}

void EglScreen::bind() const { glBindFramebuffer(GL_FRAMEBUFFER, buffers_.front().name); }

void EglScreen::make_context() {
    for (EGLDisplay display : candidate_displays()) {
        context_ = context_on(display);
        if (context_ == EGL_NO_CONTEXT) continue;
        display_ = display;
        const char* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
        if (version && std::atoi(version) >= 3) return;
        throw Failure(std::string("OpenGL 3.0 or newer is needed, this machine's EGL has ") +
                      (version ? version : "none"));
    }
    throw Failure("no OpenGL without a display: EGL finds no device and no software renderer (on Debian, "
                  "install libegl-mesa0 and libgl1-mesa-dri)");
}

void EglScreen::add_frame_buffer(int width, int height, bool with_depth) {
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    for (GLenum limit : {GL_MAX_RENDERBUFFER_SIZE, GL_MAX_TEXTURE_SIZE}) {
        GLint largest = 0;
        glGetIntegerv(limit, &largest);
        if (width <= largest && height <= largest) continue;
        throw Failure("a picture of " + size + " is more than this OpenGL can draw (" +
                      std::to_string(largest) + " pixels at most): use a smaller --scale or --supersample");
    }
    FrameBuffer buffer = {width, height, 0, 0, 0};
    glGenFramebuffers(1, &buffer.name);
    glBindFramebuffer(GL_FRAMEBUFFER, buffer.name);
    // No alpha: the show asks its display for none, and what blending finds there is 1.
    glGenRenderbuffers(1, &buffer.color);
    glBindRenderbuffer(GL_RENDERBUFFER, buffer.color);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGB8, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, buffer.color);
    if (with_depth) {
        glGenRenderbuffers(1, &buffer.depth);
        glBindRenderbuffer(GL_RENDERBUFFER, buffer.depth);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, buffer.depth);
    }
    buffers_.push_back(buffer);
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        throw Failure("this OpenGL cannot make a picture of " + size + " pixels with a depth buffer");
    }
}

} // namespace offscreen
