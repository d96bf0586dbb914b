#include "show/image/filters.h"
#include "show/image/loops.h"
#include "show/image/planes.h"
#include "show/image/progress.h"

void image_blend(Image* dst, const Image* src, int mode, std::int32_t opacity) {
    if (!dst || !src || !same_size(dst, src)) return;
    if (!image_has_three_planes(dst) && image_has_three_planes(src)) return;
    for (Plane plane : kColorPlanes) {
        if (!(dst->*plane)) continue;
        const std::int32_t* values = src->*plane ? src->*plane : src->green;
        loops().blend(dst->*plane, values, image_count(dst), mode, opacity);
    }
    report_progress();
}
