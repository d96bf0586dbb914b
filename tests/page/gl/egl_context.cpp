#include "tests/page/gl/egl_context.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <stdexcept>
#include <string>

EglContext::EglContext(Kind kind) {
    display_ = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
    if (display_ == EGL_NO_DISPLAY || !eglInitialize(display_, nullptr, nullptr))
        throw std::runtime_error("no EGL display without a window (on Debian, install libegl-mesa0)");
    const bool es = kind == Kind::es3;
    const EGLint wanted[] = {EGL_RENDERABLE_TYPE, es ? EGL_OPENGL_ES3_BIT : EGL_OPENGL_BIT, EGL_SURFACE_TYPE,
                             0, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    const EGLint version_3[] = {EGL_CONTEXT_CLIENT_VERSION, 3, EGL_NONE};
    if (eglBindAPI(es ? EGL_OPENGL_ES_API : EGL_OPENGL_API) &&
        eglChooseConfig(display_, wanted, &config, 1, &count) && count == 1) {
        // Without a version: the newest that still has all of OpenGL 1.
        context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, es ? version_3 : nullptr);
    }
    if (context_ == EGL_NO_CONTEXT)
        throw std::runtime_error(std::string("no context of ") + (es ? "OpenGL ES 3" : "OpenGL 1"));
    make_current();
}

EglContext::~EglContext() {
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(display_, context_);
}

void EglContext::make_current() const {
    if (!eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_))
        throw std::runtime_error("a context cannot be made current without a surface");
}

void* gl_function(const char* name) {
    const auto function = eglGetProcAddress(name);
    if (!function) throw std::runtime_error(std::string("no function ") + name);
    return reinterpret_cast<void*>(function);
}

page::gl::Driver native_driver() {
    page::gl::Driver driver;
#define LOOK_UP(Result, name, parameters)                                                                    \
    driver.name = reinterpret_cast<Result(*) parameters>(gl_function("gl" #name));
    PAGE_GL_DRIVER_FUNCTIONS(LOOK_UP)
#undef LOOK_UP
    return driver;
}
