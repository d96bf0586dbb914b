// The errors that OpenGL reports: the layer's must be the reference renderer's, call by call. The show's picture
// depends on them: it asks for another wrapping where an error is pending.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/page/gl/both.h"

namespace {

struct Call {
    const char* what;
    std::function<void(const Gl& gl)> make;
};

// A sequence of calls, each with its own name.
#define CALL(...)                                                                                            \
    Call {                                                                                                   \
#__VA_ARGS__, [](const Gl& called) { called.__VA_ARGS__; }                                           \
    }

// The error after each call.
std::vector<std::string> errors_of(const Gl& gl, const std::vector<Call>& calls) {
    std::vector<std::string> errors;
    for (const Call& call : calls) {
        call.make(gl);
        errors.push_back(std::string(call.what) + ": " + std::to_string(gl.glGetError()));
    }
    return errors;
}

void expect_same_errors(const std::vector<Call>& calls) {
    std::vector<std::string> reference, layer;
    drawn_by_reference([&](const Gl& gl) { reference = errors_of(gl, calls); });
    drawn_by_layer([&](const Gl& gl) { layer = errors_of(gl, calls); });
    EXPECT_EQ(layer, reference);
}

const float kOne[4] = {1, 1, 1, 1}, kNegative[4] = {-1, -1, -1, -1}, kLarge[4] = {129, 0, 0, 0};
GLubyte g_pixels[4096];

TEST(LayerErrors, OfSwitches) {
    std::vector<Call> calls;
    static const GLenum names[] = {
        GL_BLEND,      GL_DEPTH_TEST, GL_LIGHT0,         GL_LIGHT7,    GL_LIGHT7 + 1, GL_TEXTURE,
        GL_TEXTURE_2D, GL_FOG,        GL_COLOR_MATERIAL, GL_NORMALIZE, GL_ALPHA,      GL_STENCIL_TEST,
        GL_CULL_FACE,  GL_LIGHTING,   GL_PROJECTION,     GL_POINTS,    GL_DITHER,     GL_SCISSOR_TEST};
    for (const GLenum name : names) {
        calls.push_back({"glEnable", [name](const Gl& gl) { gl.glEnable(name); }});
        calls.push_back({"glDisable", [name](const Gl& gl) { gl.glDisable(name); }});
    }
    expect_same_errors(calls);
}

TEST(LayerErrors, OfValuesThatAreNotAllowed) {
    expect_same_errors({CALL(glBlendFunc(GL_ALPHA, GL_SRC_ALPHA)),
                        CALL(glBlendFunc(GL_SRC_ALPHA, GL_ALPHA)),
                        CALL(glBlendFunc(GL_SRC_COLOR, GL_DST_COLOR)),
                        CALL(glBlendFunc(GL_SRC_ALPHA_SATURATE, GL_SRC_ALPHA_SATURATE)),
                        CALL(glDepthFunc(GL_NEVER)),
                        CALL(glDepthFunc(GL_ALWAYS + 1)),
                        CALL(glCullFace(GL_FRONT_AND_BACK)),
                        CALL(glCullFace(GL_LEFT)),
                        CALL(glStencilFunc(GL_KEEP, 0, 0)),
                        CALL(glStencilOp(GL_INVERT, GL_INCR, GL_DECR)),
                        CALL(glStencilOp(GL_KEEP, GL_KEEP, GL_ALWAYS)),
                        CALL(glShadeModel(GL_FLAT)),
                        CALL(glShadeModel(GL_LINE)),
                        CALL(glHint(GL_FOG_HINT, GL_NICEST)),
                        CALL(glHint(GL_FOG, GL_NICEST)),
                        CALL(glHint(GL_FOG_HINT, GL_LINEAR)),
                        CALL(glViewport(0, 0, -1, 1)),
                        CALL(glViewport(-5, -5, 0, 0)),
                        CALL(glPointSize(0)),
                        CALL(glPointSize(-1)),
                        CALL(glPointSize(0.1f)),
                        CALL(glClear(0)),
                        CALL(glClear(GL_ACCUM_BUFFER_BIT)),
                        CALL(glClear(1)),
                        CALL(glFogi(GL_FOG_MODE, GL_LINEAR)),
                        CALL(glFogi(GL_FOG_MODE, GL_NEAREST)),
                        CALL(glFogf(GL_FOG_DENSITY, -1)),
                        CALL(glFogf(GL_FOG_START, -1)),
                        CALL(glFogi(GL_FOG, 1)),
                        CALL(glFogfv(GL_FOG_COLOR, kOne)),
                        CALL(glMatrixMode(GL_TEXTURE)),
                        CALL(glMatrixMode(GL_TEXTURE_2D)),
                        CALL(glOrtho(1, 1, 0, 1, 0, 1)),
                        CALL(glOrtho(0, 1, 0, 0, 0, 1)),
                        CALL(glOrtho(0, 1, 0, 1, 5, 5)),
                        CALL(glBegin(GL_POLYGON + 100))});
}

TEST(LayerErrors, OfLightsAndMaterials) {
    expect_same_errors({CALL(glLightfv(GL_LIGHT0 + 8, GL_DIFFUSE, kOne)),
                        CALL(glLightfv(GL_LIGHT0, GL_EMISSION, kOne)),
                        CALL(glLightfv(GL_LIGHT0, GL_SPOT_EXPONENT, kNegative)),
                        CALL(glLightfv(GL_LIGHT0, GL_SPOT_EXPONENT, kLarge)),
                        CALL(glLightfv(GL_LIGHT0, GL_SPOT_CUTOFF, kLarge)),
                        CALL(glLightfv(GL_LIGHT0, GL_CONSTANT_ATTENUATION, kNegative)),
                        CALL(glLightfv(GL_LIGHT0, GL_POSITION, kOne)),
                        CALL(glLightModelfv(GL_LIGHT_MODEL_AMBIENT, kOne)),
                        CALL(glLightModelfv(GL_AMBIENT, kOne)),
                        CALL(glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 5)),
                        CALL(glLightModeli(GL_LIGHT0, 1)),
                        CALL(glMaterialfv(GL_FRONT_AND_BACK, GL_SHININESS, kNegative)),
                        CALL(glMaterialfv(GL_FRONT_AND_BACK, GL_SHININESS, kLarge)),
                        CALL(glMaterialfv(GL_LEFT, GL_DIFFUSE, kOne)),
                        CALL(glMaterialfv(GL_FRONT, GL_POSITION, kOne)),
                        CALL(glMateriali(GL_FRONT, GL_SHININESS, 12)),
                        CALL(glMateriali(GL_FRONT, GL_SHININESS, 200)),
                        CALL(glMateriali(GL_FRONT, GL_DIFFUSE, 1)),
                        CALL(glColorMaterial(GL_FRONT, GL_SHININESS)),
                        CALL(glColorMaterial(GL_LEFT, GL_DIFFUSE)),
                        CALL(glColorMaterial(GL_BACK, GL_EMISSION))});
}

TEST(LayerErrors, OfStacks) {
    std::vector<Call> calls;
    for (const GLenum mode : {GL_MODELVIEW, GL_PROJECTION, GL_TEXTURE}) {
        calls.push_back({"glMatrixMode", [=](const Gl& gl) { gl.glMatrixMode(mode); }});
        for (int i = 0; i < 34; ++i) calls.push_back(CALL(glPushMatrix()));
        for (int i = 0; i < 34; ++i) calls.push_back(CALL(glPopMatrix()));
    }
    expect_same_errors(calls);
}

TEST(LayerErrors, OfTextures) {
    expect_same_errors(
        {CALL(glBindTexture(GL_TEXTURE, 1)),
         CALL(glBindTexture(GL_TEXTURE_2D, 77)),
         CALL(glGenTextures(-1, nullptr)),
         CALL(glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP)),
         CALL(glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_LINEAR)),
         CALL(glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR_MIPMAP_LINEAR)),
         CALL(glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_REPEAT)),
         CALL(glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WIDTH, 1)),
         CALL(glTexParameteri(GL_TEXTURE, GL_TEXTURE_WRAP_S, GL_CLAMP)),
         CALL(glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE)),
         CALL(glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_LINEAR)),
         CALL(glTexEnvf(GL_TEXTURE_ENV, GL_TEXTURE_WRAP_S, GL_MODULATE)),
         CALL(glTexEnvf(GL_TEXTURE_2D, GL_TEXTURE_ENV_MODE, GL_MODULATE)),
         CALL(glTexImage2D(GL_TEXTURE_2D, 0, 3, 8, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, g_pixels)),
         CALL(glTexImage2D(GL_TEXTURE_2D, -1, 3, 8, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, g_pixels)),
         CALL(glTexImage2D(GL_TEXTURE_2D, 40, 3, 8, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, g_pixels)),
         CALL(glTexImage2D(GL_TEXTURE_2D, 0, 3, -8, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, g_pixels)),
         CALL(glTexImage2D(GL_TEXTURE_2D, 0, 3, 8, 1 << 20, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr)),
         CALL(glTexImage2D(GL_TEXTURE_2D, 0, 3, 8, 8, 2, GL_RGB, GL_UNSIGNED_BYTE, g_pixels)),
         CALL(glTexImage2D(GL_TEXTURE, 0, 3, 8, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, g_pixels)),
         CALL(glTexImage2D(GL_TEXTURE_2D, 0, 7, 8, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, g_pixels)),
         CALL(glTexImage2D(GL_TEXTURE_2D, 0, 3, 8, 8, 0, GL_LINEAR, GL_UNSIGNED_BYTE, g_pixels)),
         CALL(glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 64, 64, 0)),
         CALL(glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 0, 0, 64, 64, 0)),
         CALL(glCopyTexImage2D(GL_TEXTURE_2D, 0, 3, 0, 0, 64, 64, 0)),
         CALL(glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_LINEAR, 0, 0, 64, 64, 0)),
         CALL(glCopyTexImage2D(GL_TEXTURE_2D, -1, GL_RGB, 0, 0, 64, 64, 0)),
         CALL(glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, -64, 64, 0)),
         CALL(glCopyTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 0, 0, 64, 64, 3)),
         CALL(glCopyTexImage2D(GL_PROXY_TEXTURE_2D, 0, GL_RGB, 0, 0, 64, 64, 0)),
         CALL(glPixelStorei(GL_UNPACK_ALIGNMENT, 3)),
         CALL(glPixelStorei(GL_UNPACK_ROW_LENGTH, -1)),
         CALL(glPixelStorei(GL_UNPACK_SWAP_BYTES, 7)),
         CALL(glPixelStorei(GL_TEXTURE_2D, 1))});
}

TEST(LayerErrors, OfLists) {
    expect_same_errors({CALL(glGenLists(-1)), CALL(glGenLists(0)), CALL(glNewList(0, GL_COMPILE)),
                        CALL(glNewList(1, GL_LINEAR)), CALL(glEndList()), CALL(glNewList(1, GL_COMPILE)),
                        CALL(glNewList(2, GL_COMPILE)), CALL(glEnable(GL_TEXTURE)), CALL(glPopMatrix()),
                        CALL(glEndList()), CALL(glEndList()), CALL(glCallList(1)), CALL(glCallList(999)),
                        CALL(glNewList(1, GL_COMPILE_AND_EXECUTE)), CALL(glEnable(GL_TEXTURE)),
                        CALL(glEndList())});
}

// The first error stays until it is read; every call between glBegin and glEnd that may not be there is an error.
TEST(LayerErrors, BetweenBeginAndEndAndInTheirOrder) {
    static std::vector<GLenum> reference, layer;
    static const auto program = [](const Gl& gl, std::vector<GLenum>& errors) {
        const auto read = [&] { errors.push_back(gl.glGetError()); };
        gl.glEnd();
        gl.glEnable(GL_TEXTURE);
        read();
        read();
        const std::vector<Call> calls = {CALL(glBegin(GL_QUADS)),
                                         CALL(glEnable(GL_BLEND)),
                                         CALL(glPushMatrix()),
                                         CALL(glLoadIdentity()),
                                         CALL(glTranslated(1, 2, 3)),
                                         CALL(glMatrixMode(GL_PROJECTION)),
                                         CALL(glClear(GL_COLOR_BUFFER_BIT)),
                                         CALL(glClearColor(0, 0, 0, 0)),
                                         CALL(glBindTexture(GL_TEXTURE_2D, 0)),
                                         CALL(glDepthMask(GL_TRUE)),
                                         CALL(glFlush()),
                                         CALL(glNewList(1, GL_COMPILE)),
                                         CALL(glGenLists(1)),
                                         CALL(glFogi(GL_FOG_MODE, GL_LINEAR)),
                                         CALL(glLightModeli(GL_LIGHT_MODEL_LOCAL_VIEWER, 1)),
                                         CALL(glMateriali(GL_FRONT, GL_SHININESS, 1)),
                                         CALL(glColor3f(1, 1, 1)),
                                         CALL(glCallList(5)),
                                         CALL(glPointSize(2)),
                                         CALL(glGetError())};
        for (const Call& call : calls) {
            gl.glBegin(GL_QUADS);
            call.make(gl);
            gl.glEnd();
            read();
        }
    };
    reference.clear();
    layer.clear();
    drawn_by_reference([](const Gl& gl) { program(gl, reference); });
    drawn_by_layer([](const Gl& gl) { program(gl, layer); });
    EXPECT_EQ(layer, reference);
}

// What GLU and the show can read.
TEST(LayerQueries, AnswerAsTheReferenceDoes) {
    static std::vector<double> reference, layer;
    static const auto program = [](const Gl& gl, std::vector<double>& values) {
        gl.glMatrixMode(GL_PROJECTION);
        gl.glOrtho(0, 1024, 768, 0, -100, 100);
        gl.glPushMatrix();
        gl.glMatrixMode(GL_MODELVIEW);
        gl.glRotatef(33.3f, 0.3f, 0.5f, 0.9f);
        gl.glTranslated(1, 2, 3);
        gl.glScaled(3, 2, 1);
        gl.glRotatef(90, 0, -1, 0);
        gl.glRotatef(0, 0, 0, 0);
        gl.glRotatef(10, 0, 0, 0);
        gl.glPixelStorei(GL_UNPACK_ALIGNMENT, 8);
        gl.glPixelStorei(GL_PACK_SKIP_ROWS, 3);
        gl.glViewport(1, 2, 3, 4);
        gl.glColor4f(2, 0.5f, -1, 0);
        for (const GLenum name :
             {GL_MATRIX_MODE, GL_MODELVIEW_STACK_DEPTH, GL_PROJECTION_STACK_DEPTH, GL_VIEWPORT,
              GL_TEXTURE_BINDING_2D, GL_UNPACK_ALIGNMENT, GL_PACK_SKIP_ROWS}) {
            GLint value[4] = {};
            gl.glGetIntegerv(name, value);
            values.insert(values.end(), value, value + 4);
        }
        for (const GLenum name :
             {GL_MODELVIEW_MATRIX, GL_PROJECTION_MATRIX, GL_TEXTURE_MATRIX, GL_CURRENT_COLOR}) {
            GLfloat value[16] = {};
            gl.glGetFloatv(name, value);
            values.insert(values.end(), value, value + 16);
        }
        for (const int size : {64, 1 << 20}) {
            gl.glTexImage2D(GL_PROXY_TEXTURE_2D, 0, 3, size, size, 0, GL_RGB, GL_UNSIGNED_BYTE, nullptr);
            GLint width = 0;
            gl.glGetTexLevelParameteriv(GL_PROXY_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
            values.push_back(width);
        }
        gl.glPixelStorei(GL_PACK_SKIP_ROWS, 0); // the picture is read afterwards
        gl.glTexImage2D(GL_TEXTURE_2D, 0, 3, 16, 8, 0, GL_RGB, GL_UNSIGNED_BYTE, g_pixels);
        for (const GLenum name : {GL_TEXTURE_WIDTH, GL_TEXTURE_HEIGHT, GL_TEXTURE_BORDER}) {
            GLint value = 0;
            gl.glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, name, &value);
            values.push_back(value);
        }
    };
    reference.clear();
    layer.clear();
    drawn_by_reference([](const Gl& gl) { program(gl, reference); });
    drawn_by_layer([](const Gl& gl) { program(gl, layer); });
    EXPECT_EQ(layer, reference);
}

} // namespace
