// Emscripten offers every GL function a second time, as emscripten_gl*, for programs that define the first name.
#include "hosts/page/gl/driver.h"

extern "C" {
#define PAGE_GL_DECLARE(Result, name, parameters) Result emscripten_gl##name parameters;
PAGE_GL_DRIVER_FUNCTIONS(PAGE_GL_DECLARE)
}

namespace page::gl {

const Driver& browser_driver() {
#define PAGE_GL_ADDRESS(Result, name, parameters) emscripten_gl##name,
    static constexpr Driver driver = {PAGE_GL_DRIVER_FUNCTIONS(PAGE_GL_ADDRESS)};
    return driver;
}

} // namespace page::gl
