// GLU entry points. Quadrics are numbered in the order of their making, from 1.
#include <GL/glu.h>

#include <memory>

#include "tests/hosts/recording/record.h"

using recording::g_gl;
using recording::record;

struct GLUquadric {
    int number;
};

namespace {

// Quadrics live until the end of the process, as the show's do.
GLUquadric* make_quadric(int number) {
    static std::vector<std::unique_ptr<GLUquadric>> made;
    made.push_back(std::make_unique<GLUquadric>(GLUquadric{number}));
    return made.back().get();
}

int bytes_per_pixel(GLenum format) {
    switch (format) {
    case GL_RGBA:
        return 4;
    case GL_RGB:
        return 3;
    case GL_LUMINANCE_ALPHA:
        return 2;
    default:
        return 1;
    }
}

int number(const GLUquadric* quadric) { return quadric ? quadric->number : 0; }

} // namespace

extern "C" {

void gluPerspective(GLdouble fovy, GLdouble aspect, GLdouble z_near, GLdouble z_far) {
    record(__func__, fovy, aspect, z_near, z_far);
}
void gluLookAt(GLdouble ex, GLdouble ey, GLdouble ez, GLdouble cx, GLdouble cy, GLdouble cz, GLdouble ux,
               GLdouble uy, GLdouble uz) {
    record(__func__, ex, ey, ez, cx, cy, cz, ux, uy, uz);
}
GLUquadric* gluNewQuadric() {
    record(__func__);
    return make_quadric(g_gl.next_quadric++);
}
void gluQuadricNormals(GLUquadric* quad, GLenum normal) { record(__func__, number(quad), normal); }
void gluQuadricTexture(GLUquadric* quad, GLboolean texture) { record(__func__, number(quad), texture); }
void gluQuadricOrientation(GLUquadric* quad, GLenum orientation) {
    record(__func__, number(quad), orientation);
}
void gluCylinder(GLUquadric* quad, GLdouble base, GLdouble top, GLdouble height, GLint slices, GLint stacks) {
    record(__func__, number(quad), base, top, height, slices, stacks);
}
GLint gluBuild2DMipmaps(GLenum target, GLint internal_format, GLsizei width, GLsizei height, GLenum format,
                        GLenum type, const void* data) {
    record(__func__, target, internal_format, width, height, format, type);
    const auto* bytes = static_cast<const unsigned char*>(data);
    const int row = width * bytes_per_pixel(format);
    const unsigned char* end = bytes + row * height;
    const unsigned char* read_end = bytes + (row + 3) / 4 * 4 * height;
    g_gl.uploads.push_back({g_gl.bound_texture, width, height, format, {bytes, end}, {end, read_end}});
    return 0;
}

} // extern "C"
