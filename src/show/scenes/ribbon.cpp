#include "show/scenes/ribbon.h"

#include <GL/gl.h>

#include <cmath>

#include "show/stage/vectors.h"

namespace {

// Issues one vertex with its texture coordinates.
void corner(double s, double t, const RibbonPoint& p) {
    glTexCoord2d(s, t);
    glVertex3f(p.x, p.y, p.z);
}

RibbonPoint operator+(const RibbonPoint& a, const RibbonPoint& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

} // namespace

RibbonPoint ribbon_point(double angle, double y) {
    return {static_cast<float>(5.0 * std::sin(angle)), static_cast<float>(y),
            static_cast<float>(5.0 * std::cos(angle))};
}

RibbonPoint ribbon_edge(const RibbonPoint& p, const RibbonPoint& next) {
    const float outwards[3] = {p.x, 0.0f, p.z};
    const float onwards[3] = {next.x - p.x, next.y - p.y, next.z - p.z};
    float across[3];
    vec3_scale_by_length(across, vec3_cross(across, outwards, onwards));
    return {static_cast<float>(across[0] * 0.03), static_cast<float>(across[1] * 0.03),
            static_cast<float>(across[2] * 0.03)};
}

void draw_ribbon_cell(const RibbonPoint& p0, const RibbonPoint& edge0, const RibbonPoint& p1,
                      const RibbonPoint& edge1) {
    glNormal3d(0, 0, -1);
    corner(0, 0, p0);
    corner(0, 1, p1);
    corner(1, 1, p1 + edge1);
    corner(1, 0, p0 + edge0);
}
