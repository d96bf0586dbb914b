#include "tests/page/gl/both.h"

#include <GL/glext.h>

#include <algorithm>
#include <cstdlib>

#include "hosts/page/gl/layer.h"
#include "tests/page/gl/egl_context.h"

namespace {

constexpr int kWidth = 1024, kHeight = 768;

Pixels read_pixels(int scale) {
    const auto read = reinterpret_cast<decltype(&glReadPixels)>(gl_function("glReadPixels"));
    const int width = kWidth * scale, height = kHeight * scale;
    Pixels rgba(static_cast<std::size_t>(4 * width * height));
    read(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    Pixels rgb;
    rgb.reserve(rgba.size());
    for (std::size_t i = 0; i < rgba.size(); i += 4) rgb.insert(rgb.end(), &rgba[i], &rgba[i] + 3);
    return rgb;
}

// A framebuffer as the layer has it.
void bind_framebuffer(const page::gl::Driver& driver, int scale) {
    GLuint framebuffer = 0;
    driver.GenFramebuffers(1, &framebuffer);
    driver.BindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    const auto attach = [&](GLenum attachment, GLenum format) {
        GLuint buffer = 0;
        driver.GenRenderbuffers(1, &buffer);
        driver.BindRenderbuffer(GL_RENDERBUFFER, buffer);
        driver.RenderbufferStorage(GL_RENDERBUFFER, format, kWidth * scale, kHeight * scale);
        driver.FramebufferRenderbuffer(GL_FRAMEBUFFER, attachment, GL_RENDERBUFFER, buffer);
    };
    attach(GL_COLOR_ATTACHMENT0, GL_RGB8);
    attach(GL_DEPTH_ATTACHMENT, GL_DEPTH_COMPONENT24);
    driver.Clear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

} // namespace

Pixels drawn_by_reference(const GlProgram& program, int scale) {
    const EglContext context(EglContext::Kind::compatibility);
    bind_framebuffer(native_driver(), scale);
    Gl gl;
#define LOOK_UP(name) gl.name = reinterpret_cast<decltype(&::name)>(gl_function(#name));
    TESTED_FUNCTIONS(LOOK_UP)
#undef LOOK_UP
    gl.glViewport(0, 0, kWidth * scale, kHeight * scale);
    program(gl);
    return read_pixels(scale);
}

Pixels drawn_by_layer(const GlProgram& program, int scale) {
    const EglContext context(EglContext::Kind::es3);
    const page::gl::Driver driver = native_driver();
    if (!page::gl::start(driver, kWidth * scale, kHeight * scale)) return {};
#define OWN(name) ::name,
    const Gl gl = {TESTED_FUNCTIONS(OWN)};
#undef OWN
    program(gl);
    page::gl::finish();
    const Pixels pixels = read_pixels(scale);
    page::gl::stop();
    return pixels;
}

PixelDifference difference(const Pixels& a, const Pixels& b, int scale) {
    PixelDifference result;
    if (a.size() != b.size() || a.empty()) return result;
    result.most = 0;
    const std::size_t width = static_cast<std::size_t>(kWidth * scale);
    for (std::size_t i = 0; i < a.size(); i += 3) {
        int worst = 0;
        for (std::size_t j = i; j < i + 3; ++j) worst = std::max(worst, std::abs(a[j] - b[j]));
        result.most = std::max(result.most, worst);
        if (worst <= 1) continue;
        if (++result.pixels > 1) continue;
        const auto color = [i](const Pixels& p) {
            return "(" + std::to_string(p[i]) + ", " + std::to_string(p[i + 1]) + ", " +
                   std::to_string(p[i + 2]) + ")";
        };
        result.where = "first at " + std::to_string(i / 3 % width) + ", " + std::to_string(i / 3 / width) +
                       ": " + color(a) + " and " + color(b);
    }
    return result;
}
