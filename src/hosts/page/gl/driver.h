// The functions of OpenGL ES 3.0 that the layer calls. They have the names of OpenGL's own functions, which the layer
// defines itself, so it calls them through this table.
#pragma once

#include <GL/gl.h>

#include <cstddef>

namespace page::gl {

// Result, name without the prefix, parameters. GLchar, GLintptr and GLsizeiptr are written out: not every GL/gl.h has
// them.
#define PAGE_GL_DRIVER_FUNCTIONS(F)                                                                          \
    F(void, AttachShader, (GLuint, GLuint))                                                                  \
    F(void, BindBuffer, (GLenum, GLuint))                                                                    \
    F(void, BindFramebuffer, (GLenum, GLuint))                                                               \
    F(void, BindRenderbuffer, (GLenum, GLuint))                                                              \
    F(void, BindTexture, (GLenum, GLuint))                                                                   \
    F(void, BindVertexArray, (GLuint))                                                                       \
    F(void, BlendFunc, (GLenum, GLenum))                                                                     \
    F(void, BlitFramebuffer, (GLint, GLint, GLint, GLint, GLint, GLint, GLint, GLint, GLbitfield, GLenum))   \
    F(void, BufferData, (GLenum, std::ptrdiff_t, const void*, GLenum))                                       \
    F(GLenum, CheckFramebufferStatus, (GLenum))                                                              \
    F(void, Clear, (GLbitfield))                                                                             \
    F(void, ClearColor, (GLfloat, GLfloat, GLfloat, GLfloat))                                                \
    F(void, ColorMask, (GLboolean, GLboolean, GLboolean, GLboolean))                                         \
    F(void, CompileShader, (GLuint))                                                                         \
    F(void, CopyTexImage2D, (GLenum, GLint, GLenum, GLint, GLint, GLsizei, GLsizei, GLint))                  \
    F(void, CopyTexSubImage2D, (GLenum, GLint, GLint, GLint, GLint, GLint, GLsizei, GLsizei))                \
    F(GLuint, CreateProgram, ())                                                                             \
    F(GLuint, CreateShader, (GLenum))                                                                        \
    F(void, CullFace, (GLenum))                                                                              \
    F(void, DeleteBuffers, (GLsizei, const GLuint*))                                                         \
    F(void, DeleteFramebuffers, (GLsizei, const GLuint*))                                                    \
    F(void, DeleteProgram, (GLuint))                                                                         \
    F(void, DeleteRenderbuffers, (GLsizei, const GLuint*))                                                   \
    F(void, DeleteShader, (GLuint))                                                                          \
    F(void, DeleteTextures, (GLsizei, const GLuint*))                                                        \
    F(void, DeleteVertexArrays, (GLsizei, const GLuint*))                                                    \
    F(void, DepthFunc, (GLenum))                                                                             \
    F(void, DepthMask, (GLboolean))                                                                          \
    F(void, Disable, (GLenum))                                                                               \
    F(void, DrawElements, (GLenum, GLsizei, GLenum, const void*))                                            \
    F(void, Enable, (GLenum))                                                                                \
    F(void, EnableVertexAttribArray, (GLuint))                                                               \
    F(void, FramebufferRenderbuffer, (GLenum, GLenum, GLenum, GLuint))                                       \
    F(void, GenBuffers, (GLsizei, GLuint*))                                                                  \
    F(void, GenFramebuffers, (GLsizei, GLuint*))                                                             \
    F(void, GenRenderbuffers, (GLsizei, GLuint*))                                                            \
    F(void, GenTextures, (GLsizei, GLuint*))                                                                 \
    F(void, GenVertexArrays, (GLsizei, GLuint*))                                                             \
    F(void, GetIntegerv, (GLenum, GLint*))                                                                   \
    F(void, GetProgramInfoLog, (GLuint, GLsizei, GLsizei*, char*))                                           \
    F(void, GetProgramiv, (GLuint, GLenum, GLint*))                                                          \
    F(GLint, GetUniformLocation, (GLuint, const char*))                                                      \
    F(void, LineWidth, (GLfloat))                                                                            \
    F(void, LinkProgram, (GLuint))                                                                           \
    F(void, PixelStorei, (GLenum, GLint))                                                                    \
    F(void, RenderbufferStorage, (GLenum, GLenum, GLsizei, GLsizei))                                         \
    F(void, ShaderSource, (GLuint, GLsizei, const char* const*, const GLint*))                               \
    F(void, StencilFunc, (GLenum, GLint, GLuint))                                                            \
    F(void, StencilOp, (GLenum, GLenum, GLenum))                                                             \
    F(void, TexImage2D, (GLenum, GLint, GLint, GLsizei, GLsizei, GLint, GLenum, GLenum, const void*))        \
    F(void, TexParameteri, (GLenum, GLenum, GLint))                                                          \
    F(void, Uniform1f, (GLint, GLfloat))                                                                     \
    F(void, Uniform4fv, (GLint, GLsizei, const GLfloat*))                                                    \
    F(void, Uniform4iv, (GLint, GLsizei, const GLint*))                                                      \
    F(void, UseProgram, (GLuint))                                                                            \
    F(void, VertexAttribPointer, (GLuint, GLint, GLenum, GLboolean, GLsizei, const void*))                   \
    F(void, Viewport, (GLint, GLint, GLsizei, GLsizei))

struct Driver {
#define PAGE_GL_MEMBER(Result, name, parameters) Result(*name) parameters;
    PAGE_GL_DRIVER_FUNCTIONS(PAGE_GL_MEMBER)
#undef PAGE_GL_MEMBER
};

// The functions that the layer calls from here on, and those.
void set_driver(const Driver& driver);
const Driver& driver();

// WebGL 2 of the context that is current for Emscripten.
const Driver& browser_driver();

} // namespace page::gl
