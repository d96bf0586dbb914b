#include "hosts/page/gl/layer.h"

#include "hosts/page/gl/attributes.h"
#include "hosts/page/gl/driver.h"
#include "hosts/page/gl/errors.h"
#include "hosts/page/gl/geometry.h"
#include "hosts/page/gl/lighting.h"
#include "hosts/page/gl/lists.h"
#include "hosts/page/gl/matrices.h"
#include "hosts/page/gl/renderer.h"
#include "hosts/page/gl/state.h"
#include "hosts/page/gl/textures.h"

namespace page::gl {

bool start(const Driver& driver, int width, int height) {
    set_driver(driver);
    reset_errors();
    reset_attributes();
    reset_geometry();
    reset_lighting();
    reset_lists();
    reset_matrices();
    reset_state();
    if (!start_renderer(width, height)) return false;
    reset_textures();
    return true;
}

void stop() {
    stop_renderer();
    delete_textures();
    reset_lists();
}

void set_size(int width, int height) { resize_framebuffer(width, height); }

void finish() {
    draw_queue();
    bind_framebuffer();
}

void present() {
    draw_queue();
    copy_to_screen();
}

void set_report(void (*report)(const char* line)) { report_to(report); }

} // namespace page::gl
