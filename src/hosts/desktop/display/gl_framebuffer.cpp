#include "hosts/desktop/display/gl_framebuffer.h"

#include <GL/glx.h>

#include <cstdlib>
#include <cstring>

namespace desktop {
namespace {

// Whether `list`, names separated by spaces, holds `name`.
bool lists(const char* list, const char* name) {
    const std::size_t length = std::strlen(name);
    for (const char* at = list; at && (at = std::strstr(at, name)); at += length) {
        const bool starts = at == list || at[-1] == ' ';
        if (starts && (at[length] == ' ' || at[length] == '\0')) return true;
    }
    return false;
}

const char* gl_string(GLenum name) { return reinterpret_cast<const char*>(glGetString(name)); }

bool context_has_framebuffers() {
    const char* version = gl_string(GL_VERSION);
    if (version && std::atoi(version) >= 3) return true;
    return lists(gl_string(GL_EXTENSIONS), "GL_ARB_framebuffer_object");
}

template <class Function>
bool look_up(Function& function, const char* name) {
    function = reinterpret_cast<Function>(glXGetProcAddressARB(reinterpret_cast<const GLubyte*>(name)));
    return function != nullptr;
}

bool look_up_all(FramebufferCalls& calls) {
    return look_up(calls.gen_framebuffers, "glGenFramebuffers") &&
           look_up(calls.bind_framebuffer, "glBindFramebuffer") &&
           look_up(calls.gen_renderbuffers, "glGenRenderbuffers") &&
           look_up(calls.bind_renderbuffer, "glBindRenderbuffer") &&
           look_up(calls.renderbuffer_storage, "glRenderbufferStorage") &&
           look_up(calls.framebuffer_renderbuffer, "glFramebufferRenderbuffer") &&
           look_up(calls.check_framebuffer_status, "glCheckFramebufferStatus") &&
           look_up(calls.blit_framebuffer, "glBlitFramebuffer");
}

} // namespace

const FramebufferCalls* framebuffer_calls() {
    static FramebufferCalls calls;
    static const bool found = context_has_framebuffers() && look_up_all(calls);
    return found ? &calls : nullptr;
}

} // namespace desktop
