// Ribbons that wind about the y axis: the strands of the double helix and the film ribbons.
#pragma once

// A point on one edge of the ribbon. Single precision, like the functions of stage/vectors.h that take it.
struct RibbonPoint {
    float x, y, z;
};

// The point at an angle (radians) on a circle of radius 5 about the y axis, at height y.
RibbonPoint ribbon_point(double angle, double y);

// The vector across the ribbon at p, where `next` is the point after p. About 3 units long, as vec3_scale_by_length
// multiplies by the length.
RibbonPoint ribbon_edge(const RibbonPoint& p, const RibbonPoint& next);

// Issues one cell, from p0 to p1 with the vectors across edge0 and edge1, inside the caller's glBegin(GL_QUADS). It
// shows the whole texture. The normal is (0, 0, -1) in all cells, so the whole ribbon is lit alike. Intentional.
void draw_ribbon_cell(const RibbonPoint& p0, const RibbonPoint& edge0, const RibbonPoint& p1,
                      const RibbonPoint& edge1);
