#include "hosts/offscreen/drawing/egl_screen.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "hosts/common/gl_scale.h"
#include "hosts/offscreen/failure.h"

namespace offscreen {

namespace {

// Displays to try, best first: the machine's devices, then Mesa without any device, then EGL's own choice.
std::vector<EGLDisplay> candidate_displays() {
    std::vector<EGLDisplay> displays;
    const char* extensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (common::lists_extension(extensions, "EGL_EXT_device_enumeration") &&
        common::lists_extension(extensions, "EGL_EXT_platform_device")) {
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
    if (common::lists_extension(extensions, "EGL_MESA_platform_surfaceless")) {
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
    if (common::lists_extension(extensions, "EGL_KHR_surfaceless_context") && eglBindAPI(EGL_OPENGL_API)) {
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

EglScreen::EglScreen(common::Extent show, int scale, int supersample)
    : size_{show.width * scale, show.height * scale} {
    make_context();
    try {
        surface_ = std::make_unique<common::GlSurface>(show, scale * supersample);
    } catch (const std::runtime_error& error) {
        throw Failure(std::string(error.what()) + ": use a smaller --scale or --supersample");
    }
    common::draw_scaled(*surface_);
    glViewport(0, 0, show.width, show.height);
}

EglScreen::~EglScreen() {
    surface_.reset();
    // The display stays initialised: it belongs to the process, and terminating it would unload the driver.
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(display_, context_);
}

void EglScreen::make_context() {
    std::string too_old; // versions found
    for (EGLDisplay display : candidate_displays()) {
        context_ = context_on(display);
        if (context_ == EGL_NO_CONTEXT) continue;
        display_ = display;
        const char* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
        if (version && std::atoi(version) >= 3) return;
        too_old += (too_old.empty() ? "" : ", ") + std::string(version ? version : "none");
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(display, context_);
    }
    if (!too_old.empty())
        throw Failure("OpenGL 3.0 or newer is needed, this machine's EGL has only " + too_old);
    throw Failure("no OpenGL without a display: EGL finds no device and no software renderer (on Debian, "
                  "install libegl-mesa0 and libgl1-mesa-dri)");
}

} // namespace offscreen
