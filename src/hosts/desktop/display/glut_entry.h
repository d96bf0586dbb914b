// The desktop host between a show and freeglut. A show calls GLUT by its own names and checks nothing; the
// linker's --wrap (see CMakeLists.txt) leads the calls below here first, under the names __wrap_<call>, and
// freeglut's own stay reachable as __real_<call>. Everything else of GLUT goes straight to freeglut.
//
// - main: reads the command line before the show asks its first question.
// - glutInit: connects to the desktop or says why that cannot be done; from then on signals are noted.
// - glutEnterGameMode: enters the mode, or opens a window and the off-screen surface that stands for the
// screen.
// - glutReshapeFunc: the show is told one size, 1024x768, once; what its window does later is not its
// business.
// - glutDisplayFunc: around each frame: signals, and a picture that is still to be shown.
// - glutIdleFunc: signals; frames while the window is hidden, which freeglut leaves out.
// - glutSwapBuffers: presents the surface, and ends the process when that was asked for.
#pragma once

extern "C" {

int __wrap_main(int argc, char** argv);
void __wrap_glutInit(int* argc, char** argv);
int __wrap_glutEnterGameMode();
void __wrap_glutReshapeFunc(void (*callback)(int width, int height));
void __wrap_glutDisplayFunc(void (*callback)());
void __wrap_glutIdleFunc(void (*callback)());
void __wrap_glutSwapBuffers();

int __real_main(int argc, char** argv);
void __real_glutInit(int* argc, char** argv);
void __real_glutReshapeFunc(void (*callback)(int width, int height));
void __real_glutDisplayFunc(void (*callback)());
void __real_glutIdleFunc(void (*callback)());
void __real_glutSwapBuffers();

} // extern "C"
