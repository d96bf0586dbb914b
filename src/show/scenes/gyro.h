// What the gyroscope room shares with the cross.
#pragma once

// Draws one strand of the double helix: draw_helix_ribbon (greetings.h) in a glBegin and glEnd.
void draw_helix_strand(float phase);
