// What the greetings share with the scenes after them: textures, a box, the scroll height and the helix. The
// textures and the display list are made by greetings_prepare, which runs before the other scenes are prepared,
// and never freed.
#pragma once

extern unsigned tex_wall;   // a grey tile with dark edges; the top one is less dark
extern unsigned tex_ribbon; // a band with two glowing lines along its edges
extern unsigned tex_beam;   // grey plasma
extern unsigned tex_words;  // the captions: eight rows, each an eighth of the texture's height

extern unsigned box_list; // display list: the box from (0, 0, 0) to (1, 1, 1), textured

// Scroll height along y, in units: what lies too far above or below it is not drawn. Every start of the greetings
// sets it to 0; their third pass moves it, and it keeps its value when the scene stops. The gyroscope room and the
// cross set it to 0 in every frame.
extern float g_scroll_y;

// Issues the quads of one strand of the double helix, which runs about the y axis upwards from y = 0, inside the
// caller's glBegin(GL_QUADS). `phase` turns the strand by that many steps of 0.1768 radians: 0 and 18 for the two.
void draw_helix_ribbon(float phase);
