// Lights, projection, fog and view of the scenes in 3D.
#pragma once

// Sets the ambient light to 0.8 and light 0 to diffuse and specular 0.5, and enables light 0 (not GL_LIGHTING).
void set_up_lights();

// Sets a perspective of 70 degrees, 4:3, from 0.1 to 500 units. Leaves the modelview matrix current and unchanged.
void set_up_projection();

// Enables linear grey fog between two distances (units).
void set_up_fog(float start, float end);

// Multiplies the current matrix by the view from (0, 0, 35) to the origin. The up vector (0, 1, 1) is intentional.
void look_at_origin();
