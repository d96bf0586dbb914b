// Preloaded into skav-export: machines that this one is not. The environment variable FAULT says which.
//
//     old device          the first GL version that is asked for is 2.1
//     no nameless files   the file system has no O_TMPFILE
#include <GL/gl.h>
#include <dlfcn.h>
#include <fcntl.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace {

bool fault_is(const char* name) {
    const char* fault = std::getenv("FAULT");
    return fault && std::strcmp(fault, name) == 0;
}

} // namespace

extern "C" {

const GLubyte* glGetString(GLenum name) {
    static bool asked = false;
    if (name == GL_VERSION && !asked && fault_is("old device")) {
        asked = true;
        return reinterpret_cast<const GLubyte*>("2.1 of long ago");
    }
    const auto library = reinterpret_cast<decltype(&glGetString)>(dlsym(RTLD_NEXT, "glGetString"));
    return library(name);
}

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const int mode = (flags & (O_CREAT | O_TMPFILE)) ? va_arg(arguments, int) : 0;
    va_end(arguments);
    if ((flags & O_TMPFILE) == O_TMPFILE && fault_is("no nameless files")) {
        errno = EOPNOTSUPP;
        return -1;
    }
    static const auto library = reinterpret_cast<decltype(&open)>(dlsym(RTLD_NEXT, "open"));
    return library(path, flags, mode);
}

} // extern "C"
