// The scroller's poem to the old bar, in German and in English: what its lines say, where they stand in its
// texture and how they cross the screen.
//
// The texture is 512 pixels wide, one line in every 30 rows. On the screen a line is a full screen (1024
// units) wide, so two units are a pixel. The lines follow one another from the right and grow faster in
// steps; the poem's stanzas follow the steps.
#pragma once

constexpr int kPoemLines = 22;

// Line i, 0..21, in Latin-1. At most 47 characters, so that it fits the texture.
const char* poem_line(bool english, int i);

// Where its pen starts, in pixels.
int poem_pen_x(bool english, int i);

// The left edge of line i on the screen, in overlay units, at scene time t (seconds).
double poem_left(int i, double t);
