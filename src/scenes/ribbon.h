// Bands that wind about the y axis: the strands of the double helix and the film ribbon.
#pragma once

// A point on the centre line, in single precision like the vector helpers that the width comes from.
struct RibbonPoint {
    float x, y, z;
};

// x and z of the centre line (radius 5) at an angle in radians; y as given.
RibbonPoint ribbon_point(double angle, double y);

// One cell between p0 and p1, with the whole texture on it; p2 is the point after p1, which the width at p1
// is taken from. Quad of the caller's glBegin(GL_QUADS). The normal is (0, 0, -1) whichever way the band
// turns: all of it is lit alike. Meant.
void draw_ribbon_cell(const RibbonPoint& p0, const RibbonPoint& p1, const RibbonPoint& p2);
