// GL contexts without a window, and their functions by pointer: a test draws the same with the reference renderer's
// OpenGL and with the layer on its OpenGL ES.
#pragma once

#include "hosts/page/gl/driver.h"

class EglContext {
public:
    enum class Kind {
        compatibility, // OpenGL with all of OpenGL 1
        es3,           // OpenGL ES 3
    };

    // Throws std::runtime_error where there is no such context.
    explicit EglContext(Kind kind);
    ~EglContext();
    EglContext(const EglContext&) = delete;
    EglContext& operator=(const EglContext&) = delete;

    void make_current() const;

private:
    void* display_ = nullptr;
    void* context_ = nullptr;
};

// The function of that name of whichever context is current when it is called.
void* gl_function(const char* name);

// OpenGL ES of the context that is current.
page::gl::Driver native_driver();
