// What the greetings scene shares with the scenes after it: textures, a box, its scroll height and its helix.
// The textures and the display list are made by greetings_prepare, which runs before theirs, and are never
// freed.
#pragma once

extern unsigned tex_wall;   // a grey tile with dark edges, the top one less dark
extern unsigned tex_ribbon; // a band with two glowing edge lines
extern unsigned tex_beam;   // grey plasma
extern unsigned tex_words;  // the captions: eight rows, each an eighth of the texture's height

extern unsigned box_list; // display list: the box from (0, 0, 0) to (1, 1, 1), textured

// Height of the world's camera along y, in units: what lies too far above or below it is not drawn. 0 at
// every start of the greetings scene, which moves it and leaves it where it is when it stops. The gyroscope
// room and the cross set it to 0 in every frame.
extern float g_scroll_y;

// One strand of the double helix, about the y axis upwards from y = 0: quads for a glBegin(GL_QUADS) of the
// caller's. `phase` turns the strand by so many steps (of 0.1768 radians); the two strands are 0 and 18.
void draw_helix_ribbon(float phase);
