// The GL that stands behind the entry points which this host defines itself.
//
// The host defines a few GL functions under their own names. Being in the program, they come before the GL
// library for every caller, the show and GLU alike; each does its part and hands on to the library's own.
#pragma once

#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES
#endif
#include <GL/gl.h>
#include <GL/glext.h>
#include <dlfcn.h>

// The library's function of that name.
template <typename Function>
Function* next_gl(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

#define SKAV_NEXT_GL(name) static decltype(::name)* const next_##name = next_gl<decltype(::name)>(#name)
