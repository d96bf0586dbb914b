// The scroller's flat layer of old tricks: a poem on a film strip, raster bars, plasma flashes, sprites,
// stars, a sliding sign, a cube. It draws over black and knows nothing of where its picture is shown.
#pragma once

// Makes the layer's textures and places the stars.
void prepare_scroller_layer();

// Clears and draws the whole layer, over the viewport in force and under the scenes' projection, at scene
// time t (seconds).
void draw_scroller_layer(float t);
