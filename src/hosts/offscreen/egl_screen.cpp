#include "hosts/offscreen/egl_screen.h"

#include "hosts/offscreen/failure.h"
#include "hosts/offscreen/gl_next.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

bool lists(const char* extensions, const char* name) {
    return extensions && std::strstr(extensions, name) != nullptr;
}

// Displays to try, best first: no surface at all, then the machine's devices, then whatever EGL chooses.
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

EglScreen::EglScreen(int width, int height) : width_(width), height_(height) {
    make_context();
    make_frame_buffer();
}

EglScreen::~EglScreen() {
    glDeleteFramebuffers(1, &frame_buffer_);
    glDeleteRenderbuffers(2, render_buffers_);
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(display_, context_);
    eglTerminate(display_);
}

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

void EglScreen::make_frame_buffer() {
    GLint largest = 0;
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &largest);
    if (width_ > largest || height_ > largest) {
        throw Failure("a picture of " + std::to_string(width_) + "x" + std::to_string(height_) +
                      " is more than this OpenGL can draw (" + std::to_string(largest) +
                      " pixels at most): use a smaller --scale or --supersample");
    }
    // No alpha: the show asks its display for none, and what it would read back there is 1.
    const GLenum formats[2] = {GL_RGB8, GL_DEPTH_COMPONENT24};
    const GLenum attachments[2] = {GL_COLOR_ATTACHMENT0, GL_DEPTH_ATTACHMENT};
    glGenFramebuffers(1, &frame_buffer_);
    glBindFramebuffer(GL_FRAMEBUFFER, frame_buffer_);
    glGenRenderbuffers(2, render_buffers_);
    for (int i = 0; i < 2; ++i) {
        glBindRenderbuffer(GL_RENDERBUFFER, render_buffers_[i]);
        glRenderbufferStorage(GL_RENDERBUFFER, formats[i], width_, height_);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, attachments[i], GL_RENDERBUFFER, render_buffers_[i]);
    }
    if (glCheckFramebufferStatus(GL_FRAMEBUFFER) != GL_FRAMEBUFFER_COMPLETE) {
        throw Failure("this OpenGL cannot make a picture of " + std::to_string(width_) + "x" +
                      std::to_string(height_) + " pixels with a depth buffer");
    }
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}
