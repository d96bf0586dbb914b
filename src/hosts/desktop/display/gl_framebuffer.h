// GL's framebuffer calls, looked up when the program runs: an old libGL has no such symbols to link with.
#pragma once

#include <GL/gl.h>
#include <GL/glext.h>

namespace desktop {

struct FramebufferCalls {
    PFNGLGENFRAMEBUFFERSPROC gen_framebuffers;
    PFNGLBINDFRAMEBUFFERPROC bind_framebuffer;
    PFNGLGENRENDERBUFFERSPROC gen_renderbuffers;
    PFNGLBINDRENDERBUFFERPROC bind_renderbuffer;
    PFNGLRENDERBUFFERSTORAGEPROC renderbuffer_storage;
    PFNGLFRAMEBUFFERRENDERBUFFERPROC framebuffer_renderbuffer;
    PFNGLCHECKFRAMEBUFFERSTATUSPROC check_framebuffer_status;
    PFNGLBLITFRAMEBUFFERPROC blit_framebuffer;
};

// The calls of the current context, looked up once; null where it has none.
const FramebufferCalls* framebuffer_calls();

} // namespace desktop
