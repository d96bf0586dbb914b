// What the gyroscope room shares: its helix.
#pragma once

// draw_helix_ribbon (scenes/greetings.h) as a batch of its own.
void draw_helix_strand(float phase);
