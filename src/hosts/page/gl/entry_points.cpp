// OpenGL's functions that the show and GLU call, by their own names. Those that a display list keeps go through issue.
#include <GL/gl.h>

#include <algorithm>

#include "hosts/page/gl/capabilities.h"
#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/geometry.h"
#include "hosts/page/gl/lighting.h"
#include "hosts/page/gl/lists.h"
#include "hosts/page/gl/matrices.h"
#include "hosts/page/gl/models.h"
#include "hosts/page/gl/queries.h"
#include "hosts/page/gl/state.h"
#include "hosts/page/gl/textures.h"

using namespace page;
using gl::issue;

namespace {

// The values of a parameter that is an array, kept by value.
struct Values {
    GLfloat v[4];
};

Values read_values(const GLfloat* from, int count) {
    Values values = {};
    std::copy(from, from + count, values.v);
    return values;
}

// How many values glFogfv, glLightfv, glLightModelfv and glMaterialfv read for that name.
int count_of(GLenum name) {
    switch (name) {
    case GL_FOG_COLOR:
    case GL_LIGHT_MODEL_AMBIENT:
    case GL_AMBIENT:
    case GL_DIFFUSE:
    case GL_SPECULAR:
    case GL_EMISSION:
    case GL_AMBIENT_AND_DIFFUSE:
    case GL_POSITION:
        return 4;
    case GL_SPOT_DIRECTION:
    case GL_COLOR_INDEXES:
        return 3;
    default:
        return 1;
    }
}

void fog(GLenum name, Values values) { gl::fog(name, values.v); }
void light(GLenum source, GLenum name, Values values) { gl::light(source, name, values.v); }
void light_model(GLenum name, Values values) { gl::light_model(name, values.v); }
void material(GLenum face, GLenum name, Values values) {
    gl::draw_with_old_material();
    gl::material(face, name, values.v);
}

// The functions that take a single value. The reference renderer takes also a name that stands for several values
// from glMateriali, the others being 0, but not from the rest.
void material_value(GLenum face, GLenum name, GLfloat value) { material(face, name, {{value}}); }
void fog_value(GLenum name, GLfloat value) {
    if (!gl::outside_begin()) return;
    if (count_of(name) != 1) return gl::set_error(GL_INVALID_ENUM);
    gl::fog(name, &value);
}
void light_model_value(GLenum name, GLfloat value) {
    if (!gl::outside_begin()) return;
    if (count_of(name) != 1) return gl::set_error(GL_INVALID_ENUM);
    gl::light_model(name, &value);
}

void no_command() { gl::outside_begin(); }

constexpr auto f = [](auto number) { return static_cast<GLfloat>(number); };

} // namespace

extern "C" {

// --- Vertices ---

void GLAPIENTRY glBegin(GLenum mode) { issue<gl::begin>(mode); }
void GLAPIENTRY glEnd(void) { issue<gl::end>(); }
void GLAPIENTRY glVertex2d(GLdouble x, GLdouble y) { gl::issue_vertex(f(x), f(y), 0.0f); }
void GLAPIENTRY glVertex2f(GLfloat x, GLfloat y) { gl::issue_vertex(x, y, 0.0f); }
void GLAPIENTRY glVertex2i(GLint x, GLint y) { gl::issue_vertex(f(x), f(y), 0.0f); }
void GLAPIENTRY glVertex3d(GLdouble x, GLdouble y, GLdouble z) { gl::issue_vertex(f(x), f(y), f(z)); }
void GLAPIENTRY glVertex3f(GLfloat x, GLfloat y, GLfloat z) { gl::issue_vertex(x, y, z); }
void GLAPIENTRY glVertex3i(GLint x, GLint y, GLint z) { gl::issue_vertex(f(x), f(y), f(z)); }
void GLAPIENTRY glVertex3fv(const GLfloat* v) { gl::issue_vertex(v[0], v[1], v[2]); }
void GLAPIENTRY glVertex3dv(const GLdouble* v) { gl::issue_vertex(f(v[0]), f(v[1]), f(v[2])); }
void GLAPIENTRY glTexCoord2d(GLdouble s, GLdouble t) { gl::issue_tex_coord(f(s), f(t)); }
void GLAPIENTRY glTexCoord2f(GLfloat s, GLfloat t) { gl::issue_tex_coord(s, t); }
void GLAPIENTRY glTexCoord2i(GLint s, GLint t) { gl::issue_tex_coord(f(s), f(t)); }
void GLAPIENTRY glNormal3d(GLdouble x, GLdouble y, GLdouble z) { gl::issue_normal(f(x), f(y), f(z)); }
void GLAPIENTRY glNormal3f(GLfloat x, GLfloat y, GLfloat z) { gl::issue_normal(x, y, z); }
void GLAPIENTRY glColor3d(GLdouble r, GLdouble g, GLdouble b) { gl::issue_color(f(r), f(g), f(b), 1.0f); }
void GLAPIENTRY glColor3f(GLfloat r, GLfloat g, GLfloat b) { gl::issue_color(r, g, b, 1.0f); }
void GLAPIENTRY glColor4d(GLdouble r, GLdouble g, GLdouble b, GLdouble a) {
    gl::issue_color(f(r), f(g), f(b), f(a));
}
void GLAPIENTRY glColor4f(GLfloat r, GLfloat g, GLfloat b, GLfloat a) { gl::issue_color(r, g, b, a); }

// --- Matrices ---

void GLAPIENTRY glMatrixMode(GLenum mode) { issue<gl::matrix_mode>(mode); }
void GLAPIENTRY glPushMatrix(void) { issue<gl::push_matrix>(); }
void GLAPIENTRY glPopMatrix(void) { issue<gl::pop_matrix>(); }
void GLAPIENTRY glLoadIdentity(void) { issue<gl::load_identity>(); }
void GLAPIENTRY glMultMatrixd(const GLdouble* m) { issue<gl::mult_matrix>(gl::matrix_of(m)); }
void GLAPIENTRY glMultMatrixf(const GLfloat* m) { issue<gl::mult_matrix>(gl::matrix_of(m)); }
void GLAPIENTRY glTranslated(GLdouble x, GLdouble y, GLdouble z) { issue<gl::translate>(f(x), f(y), f(z)); }
void GLAPIENTRY glTranslatef(GLfloat x, GLfloat y, GLfloat z) { issue<gl::translate>(x, y, z); }
void GLAPIENTRY glScaled(GLdouble x, GLdouble y, GLdouble z) { issue<gl::scale>(f(x), f(y), f(z)); }
void GLAPIENTRY glScalef(GLfloat x, GLfloat y, GLfloat z) { issue<gl::scale>(x, y, z); }
void GLAPIENTRY glRotated(GLdouble angle, GLdouble x, GLdouble y, GLdouble z) {
    issue<gl::rotate>(f(angle), f(x), f(y), f(z));
}
void GLAPIENTRY glRotatef(GLfloat angle, GLfloat x, GLfloat y, GLfloat z) {
    issue<gl::rotate>(angle, x, y, z);
}
void GLAPIENTRY glOrtho(GLdouble left, GLdouble right, GLdouble bottom, GLdouble top, GLdouble near,
                        GLdouble far) {
    issue<gl::ortho>(f(left), f(right), f(bottom), f(top), f(near), f(far));
}

// --- State ---

GLenum GLAPIENTRY glGetError(void) { return gl::take_error(); }
void GLAPIENTRY glEnable(GLenum capability) { issue<gl::enable>(capability, true); }
void GLAPIENTRY glDisable(GLenum capability) { issue<gl::enable>(capability, false); }
void GLAPIENTRY glBlendFunc(GLenum source, GLenum destination) { issue<gl::blend_func>(source, destination); }
void GLAPIENTRY glDepthFunc(GLenum function) { issue<gl::depth_func>(function); }
void GLAPIENTRY glDepthMask(GLboolean write) { issue<gl::depth_mask>(write); }
void GLAPIENTRY glColorMask(GLboolean red, GLboolean green, GLboolean blue, GLboolean alpha) {
    issue<gl::color_mask>(red, green, blue, alpha);
}
void GLAPIENTRY glCullFace(GLenum face) { issue<gl::cull_face>(face); }
void GLAPIENTRY glStencilFunc(GLenum function, GLint reference, GLuint mask) {
    issue<gl::stencil_func>(function, reference, mask);
}
void GLAPIENTRY glStencilOp(GLenum fail, GLenum depth_fail, GLenum pass) {
    issue<gl::stencil_op>(fail, depth_fail, pass);
}
void GLAPIENTRY glShadeModel(GLenum mode) { issue<gl::shade_model>(mode); }
void GLAPIENTRY glHint(GLenum target, GLenum mode) { issue<gl::hint>(target, mode); }
void GLAPIENTRY glViewport(GLint x, GLint y, GLsizei width, GLsizei height) {
    issue<gl::viewport>(x, y, width, height);
}
void GLAPIENTRY glPointSize(GLfloat size) { issue<gl::point_size>(size); }
void GLAPIENTRY glClearColor(GLclampf red, GLclampf green, GLclampf blue, GLclampf alpha) {
    issue<gl::set_clear_color>(red, green, blue, alpha);
}
void GLAPIENTRY glClear(GLbitfield buffers) { issue<gl::clear>(buffers); }
void GLAPIENTRY glFogf(GLenum name, GLfloat value) { issue<fog_value>(name, value); }
void GLAPIENTRY glFogi(GLenum name, GLint value) { issue<fog_value>(name, f(value)); }
void GLAPIENTRY glFogfv(GLenum name, const GLfloat* values) {
    issue<fog>(name, read_values(values, count_of(name)));
}

// Nothing waits for these: a frame is drawn when it is presented.
void GLAPIENTRY glFlush(void) { no_command(); }
void GLAPIENTRY glFinish(void) { no_command(); }

// --- Lights and materials ---

void GLAPIENTRY glLightfv(GLenum source, GLenum name, const GLfloat* values) {
    issue<light>(source, name, read_values(values, count_of(name)));
}
void GLAPIENTRY glLightModeli(GLenum name, GLint value) { issue<light_model_value>(name, f(value)); }
void GLAPIENTRY glLightModelfv(GLenum name, const GLfloat* values) {
    issue<light_model>(name, read_values(values, count_of(name)));
}
void GLAPIENTRY glMateriali(GLenum face, GLenum name, GLint value) {
    issue<material_value>(face, name, f(value));
}
void GLAPIENTRY glMaterialfv(GLenum face, GLenum name, const GLfloat* values) {
    issue<material>(face, name, read_values(values, count_of(name)));
}
void GLAPIENTRY glColorMaterial(GLenum face, GLenum mode) { issue<gl::color_material>(face, mode); }

// --- Textures ---

void GLAPIENTRY glGenTextures(GLsizei count, GLuint* names) { gl::gen_textures(count, names); }
void GLAPIENTRY glBindTexture(GLenum target, GLuint name) { issue<gl::bind_texture>(target, name); }
void GLAPIENTRY glTexEnvf(GLenum target, GLenum name, GLfloat value) {
    issue<gl::tex_env>(target, name, value);
}
void GLAPIENTRY glTexParameteri(GLenum target, GLenum name, GLint value) {
    issue<gl::tex_parameter>(target, name, value);
}
void GLAPIENTRY glTexParameterf(GLenum target, GLenum name, GLfloat value) {
    issue<gl::tex_parameter>(target, name, static_cast<GLint>(value));
}
void GLAPIENTRY glCopyTexImage2D(GLenum target, GLint level, GLenum format, GLint x, GLint y, GLsizei width,
                                 GLsizei height, GLint border) {
    issue<gl::copy_tex_image>(target, level, format, x, y, width, height, border);
}

// A list would have to keep the pixels: it is executed at once.
void GLAPIENTRY glTexImage2D(GLenum target, GLint level, GLint internal_format, GLsizei width, GLsizei height,
                             GLint border, GLenum format, GLenum type, const GLvoid* pixels) {
    if (gl::g_compiling != gl::Compiling::no && target != GL_PROXY_TEXTURE_2D)
        gl::report_missing("glTexImage2D in a display list");
    gl::tex_image(target, level, internal_format, width, height, border, format, type, pixels);
}
// GLU names it, but the show has no such textures.
void GLAPIENTRY glTexImage1D(GLenum, GLint, GLint, GLsizei, GLint, GLenum, GLenum, const GLvoid*) {
    gl::report_missing("glTexImage1D");
}
void GLAPIENTRY glPixelStorei(GLenum name, GLint value) { gl::pixel_store(name, value); }
void GLAPIENTRY glGetTexLevelParameteriv(GLenum target, GLint level, GLenum name, GLint* value) {
    gl::get_tex_level_parameter(target, level, name, value);
}

// --- Lists and queries ---

GLuint GLAPIENTRY glGenLists(GLsizei count) { return gl::gen_lists(count); }
void GLAPIENTRY glNewList(GLuint name, GLenum mode) { gl::new_list(name, mode); }
void GLAPIENTRY glEndList(void) { gl::end_list(); }
void GLAPIENTRY glCallList(GLuint name) { issue<gl::call_list>(name); }
void GLAPIENTRY glGetIntegerv(GLenum name, GLint* values) { gl::get_integers(name, values); }
void GLAPIENTRY glGetFloatv(GLenum name, GLfloat* values) { gl::get_floats(name, values); }
const GLubyte* GLAPIENTRY glGetString(GLenum name) { return gl::get_string(name); }

} // extern "C"
