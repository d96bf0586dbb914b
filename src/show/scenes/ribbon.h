// Bands that wind about the y axis: the strands of the double helix and the film ribbon.
#pragma once

// A point on the centre line, in single precision like the vector helpers that the width comes from.
struct RibbonPoint {
    float x, y, z;
};

// x and z of the centre line (radius 5) at an angle in radians; y as given.
RibbonPoint ribbon_point(double angle, double y);

// From the centre line at p to the band's other edge, where `next` is the point after p. About 3 units long:
// vec3_scale_by_length stretches by the length instead of dividing by it.
RibbonPoint ribbon_edge(const RibbonPoint& p, const RibbonPoint& next);

// One cell from the point p0 to p1, edge0 and edge1 wide, with the whole texture on it: a quad of the
// caller's glBegin(GL_QUADS). The normal is (0, 0, -1) whichever way the band turns, so all of it is lit
// alike. Meant.
void draw_ribbon_cell(const RibbonPoint& p0, const RibbonPoint& edge0, const RibbonPoint& p1,
                      const RibbonPoint& edge1);
