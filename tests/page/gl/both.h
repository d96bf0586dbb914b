// The same small program drawn twice: with the reference renderer's OpenGL and with the layer.
#pragma once

#include <GL/gl.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

// The functions of OpenGL 1.1 that the programs call.
// clang-format off
#define TESTED_FUNCTIONS(F)                                                                          \
    F(glBegin) F(glBindTexture) F(glBlendFunc) F(glCallList) F(glClear) F(glClearColor) F(glColor3f) \
    F(glColor4f) F(glColorMask) F(glColorMaterial) F(glCopyTexImage2D) F(glCullFace) F(glDepthFunc)  \
    F(glDepthMask) F(glDisable) F(glEnable) F(glEnd) F(glEndList) F(glFlush) F(glFogf) F(glFogfv)    \
    F(glFogi) F(glGenLists) F(glGenTextures) F(glGetError) F(glGetFloatv) F(glGetIntegerv)           \
    F(glGetTexLevelParameteriv) F(glHint) F(glLightModelfv) F(glLightModeli) F(glLightfv)            \
    F(glLoadIdentity) F(glMaterialfv) F(glMateriali) F(glMatrixMode) F(glMultMatrixd) F(glNewList)   \
    F(glNormal3d) F(glOrtho) F(glPixelStorei) F(glPointSize) F(glPopMatrix) F(glPushMatrix)          \
    F(glRotatef) F(glScaled) F(glShadeModel) F(glStencilFunc) F(glStencilOp) F(glTexCoord2d)         \
    F(glTexEnvf) F(glTexImage2D) F(glTexParameteri) F(glTranslated) F(glVertex2d) F(glVertex3d)      \
    F(glViewport)
// clang-format on

struct Gl {
#define TESTED_MEMBER(name) decltype(&::name) name;
    TESTED_FUNCTIONS(TESTED_MEMBER)
#undef TESTED_MEMBER
};

using GlProgram = std::function<void(const Gl& gl)>;

// What a program has drawn: RGB, 1024x768 times the scale, lowest row first.
using Pixels = std::vector<std::uint8_t>;

// Every call starts from the initial state, in a new context with a black picture.
Pixels drawn_by_reference(const GlProgram& program, int scale = 1);
Pixels drawn_by_layer(const GlProgram& program, int scale = 1);

// How two pictures differ, in steps of 1/255.
struct PixelDifference {
    int most = 255;
    int pixels = 0;    // that differ by more than 1
    std::string where; // the first of them
};
PixelDifference difference(const Pixels& a, const Pixels& b, int scale = 1);
