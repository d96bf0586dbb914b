// What every scene starts with: its lights, projection, fog and view.
#pragma once

// Light model ambient 0.8, light 0 diffuse and specular 0.5, enabled. Lighting itself is not switched on.
void set_up_lights();

// 70 degrees, 4:3, from 0.1 to 500 units; leaves the modelview matrix current and as it was.
void set_up_projection();

// Linear grey fog between two distances (units), enabled.
void set_up_fog(float start, float end);

// Multiplies the modelview matrix by the one view of the show: from (0, 0, 35) to the origin. Its up vector
// (0, 1, 1) is not upright and is meant.
void look_at_origin();
