// OpenGL 1.1 on OpenGL ES 3.0 (in a browser: WebGL 2), as far as the show and GLU call it: the gl* functions that
// entry_points.cpp defines. Everything is drawn into a framebuffer of the layer's own, colour without alpha and 24 bits
// of depth, whose picture stays from frame to frame. The show draws for 1024 by 768 pixels, whatever the size of that
// framebuffer.
//
//     page::gl::start(page::gl::browser_driver(), 2048, 1536); // the context is current
//     glBegin(GL_QUADS); ...                                   // the show
//     page::gl::present();                                     // at glutSwapBuffers
//
// One context, one thread. A call that the layer does not know, or not in this form, is reported once and has no
// effect.
#pragma once

namespace page::gl {

struct Driver;

// Makes what the layer needs in the current context of `driver`: a framebuffer of that many pixels, buffers and
// programs; sets OpenGL's initial state. False if the context cannot do it; the reason is reported.
bool start(const Driver& driver, int width, int height);

// Deletes it all: textures, lists and state too.
void stop();

// From here on pictures have this size, 1 or more. To be called between two frames; the picture so far is lost.
void set_size(int width, int height);

// Draws what is pending into the layer's framebuffer and leaves that bound. Afterwards others may read from it, with
// the driver's calls.
void finish();

// finish, then copies the picture to the context's own framebuffer, which has the same size.
void present();

// Who is told, in a line each, what the layer cannot do. The standard error stream until this is called.
void set_report(void (*report)(const char* line));

} // namespace page::gl
