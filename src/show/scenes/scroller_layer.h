// The flat layer of the scroller: a poem on a film strip, raster bars, plasma flashes, sprites, stars, a sliding sign
// and a cube.
#pragma once

// Makes the layer's textures and places the stars.
void prepare_scroller_layer();

// Clears to black and draws the layer at scene time t (seconds), in the current viewport and projection.
void draw_scroller_layer(float t);
