// The loading picture: a television from the seventies that shows "loading", with a glass of beer beside it.
//
// It is shown 410 pixels wide and 256 high in the middle of a white page, so the studio is white, without a horizon,
// and the picture's border fades into pure white. Lengths are centimetres; y is up, and the camera looks along z.
#version 3.7;

global_settings {
  assumed_gamma 1.0
  max_trace_level 12
  adc_bailout 0.02
  photons { spacing 0.12 }
}

#declare Eye = <-4, 19, -78>;
#declare Target = <0.2, 8.9, 0>;

camera {
  location Eye
  right x * 410 / 256
  up y
  angle 36.5
  look_at Target
}

// ---- The studio: white paper, a warm window from the left, a cool reflector from the right --------------------

background { rgb 1 }

// The paper: it shows shadows in front and fades into the white behind.
plane {
  y, 0
  pigment {
    function { min(1, max(0, (z - 6) / 30)) }
    color_map {
      [0.0 rgbt <1, 0.985, 0.965, 0>]
      [1.0 rgbt <1, 1, 1, 1>]
    }
  }
  finish { ambient 0 diffuse 0.85 emission 0.12 }
}

plane { z, 35.9 pigment { rgb 1 } finish { ambient 0 diffuse 0 emission 1 } no_shadow no_reflection }

light_source {
  <-55, 80, -60>
  rgb <1.00, 0.86, 0.68> * 1.15
  area_light x * 22, y * 22, 4, 4 adaptive 0 jitter circular orient
  photons { reflection on refraction on }
}

light_source {
  <70, 45, -70>
  rgb <0.62, 0.76, 1.0> * 0.38
  area_light x * 18, y * 18, 2, 2 adaptive 0 jitter
  photons { reflection off refraction off }
}

// The window that reflecting surfaces mirror.
box {
  <-16, -20, 0>, <16, 20, 0.1>
  pigment { rgb <1, 0.95, 0.86> }
  finish { ambient 0 diffuse 0 emission 1.6 }
  rotate y * -42
  translate <-62, 52, -62>
  no_image no_shadow
  photons { pass_through }
}

// ---- The board that everything stands on ---------------------------------------------------------------------

#declare Board_top = 1.6;

#declare Wood = texture {
  pigment {
    wood
    turbulence 0.06
    octaves 4
    scale <0.9, 0.9, 1>
    rotate <3, 86, 0>
    translate <0, 9, 0>
    color_map {
      [0.00 rgb <0.52, 0.26, 0.09>]
      [0.45 rgb <0.64, 0.35, 0.14>]
      [0.80 rgb <0.46, 0.21, 0.07>]
      [1.00 rgb <0.30, 0.12, 0.04>]
    }
  }
  finish { ambient 0 diffuse 0.8 specular 0.25 roughness 0.02 reflection { 0.02, 0.16 fresnel on } conserve_energy }
}

union {
  cylinder { <0, 0.3, 0>, <0, Board_top - 0.3, 0>, 23 }
  cylinder { <0, 0, 0>, <0, Board_top, 0>, 22.7 }
  torus { 22.7, 0.3 translate y * 0.3 }
  torus { 22.7, 0.3 translate y * (Board_top - 0.3) }
  texture { Wood }
  interior { ior 1.4 }
  translate <0.5, 0, 2>
}

// ---- The television ------------------------------------------------------------------------------------------

#declare Plastic = texture {
  pigment { rgb <0.93, 0.20, 0.025> }
  finish { ambient 0 diffuse 0.8 specular 0.5 roughness 0.01 reflection { 0.02, 0.35 fresnel on } conserve_energy }
}

#declare Chrome = texture {
  pigment { rgb <0.80, 0.78, 0.75> }
  finish { ambient 0 diffuse 0.25 specular 0.7 roughness 0.008 metallic reflection { 0.6 metallic } }
}

#declare Black_plastic = texture {
  pigment { rgb 0.035 }
  finish { ambient 0 diffuse 0.8 specular 0.35 roughness 0.02 }
}

#declare Screen_w = 8.0;  // half sizes of the picture tube's window
#declare Screen_h = 5.8;

#declare Phosphor = finish { ambient 0 diffuse 0 emission 1 }

// The word and a bar of blocks that fills, in front of the glowing tube; centred on the origin, facing -z.
#declare Word = text {
  ttf "VeraMoBd.ttf" "loading" 0.02, -x * 0.02
}
#declare Word_min = min_extent(Word);
#declare Word_max = max_extent(Word);
#declare Word_scale = 13.6 / (Word_max.x - Word_min.x);

#declare Message = union {
  object {
    Word
    translate <-(Word_min.x + Word_max.x) / 2, 0, 0>
    scale <Word_scale, Word_scale * 1.12, 1>
    translate y * 0.15
    pigment { rgb <0.86, 1.0, 0.70> * 1.3 }
  }
  #for (I, 0, 8)
    box {
      <-6.55 + I * 1.475, -3.3, 0>, <-5.45 + I * 1.475, -1.9, 0.02>
      #if (I < 6)
        pigment { rgb <1.0, 0.62, 0.10> * 1.2 }
      #else
        pigment { rgb <0.10, 0.26, 0.20> }
      #end
    }
  #end
  finish { Phosphor }
  no_shadow
}

#declare Tube = superellipsoid {
  <0.28, 0.28>
  scale <Screen_w, Screen_h, 0.9>
  texture {
    pigment {
      spherical
      color_map {
        [0.0 rgb <0.004, 0.030, 0.040>]
        [0.5 rgb <0.010, 0.105, 0.110>]
        [1.0 rgb <0.025, 0.220, 0.190>]
      }
      scale <Screen_w * 1.45, Screen_h * 1.45, 100>
    }
    finish { Phosphor }
  }
  // The dark lines between the scan lines.
  texture {
    pigment {
      gradient y
      color_map {
        [0.00 rgbt <0, 0, 0, 1>]
        [0.55 rgbt <0, 0, 0, 1>]
        [0.80 rgbt <0, 0, 0, 0.72>]
        [1.00 rgbt <0, 0, 0, 1>]
      }
      scale 0.42
    }
    finish { ambient 0 diffuse 0 specular 0.35 roughness 0.004 reflection { 0.0, 0.25 fresnel on } }
  }
  interior { ior 1.5 }
}

#declare Knob = union {
  cylinder { <0, 0, 0>, <0, 0, -1.1>, 1.15 texture { Chrome } }
  cylinder { <0, 0, -1.0>, <0, 0, -1.25>, 0.85 texture { Black_plastic } }
  box { <-0.10, 0.0, -1.32>, <0.10, 0.8, -1.2> pigment { rgb <1, 0.9, 0.75> } finish { ambient 0 diffuse 0.9 } }
}

#declare Tv_w = 12.2;
#declare Tv_h = 8.3;
#declare Tv_d = 7.5;
#declare Front = -Tv_d;

#declare Television = union {
  difference {
    superellipsoid { <0.22, 0.22> scale <Tv_w, Tv_h, Tv_d> }
    superellipsoid { <0.25, 0.25> scale <Tv_w - 1.5, Tv_h - 1.4, 1.2> translate z * (Front - 0.3) }
    texture { Plastic }
    interior { ior 1.45 }
  }
  // The mask in the opening, with the tube in it.
  difference {
    superellipsoid { <0.25, 0.25> scale <Tv_w - 1.5, Tv_h - 1.4, 0.5> }
    superellipsoid { <0.28, 0.28> scale <Screen_w + 0.15, Screen_h + 0.15, 3> translate x * -1.9 }
    pigment { rgb <0.90, 0.83, 0.70> }
    finish { ambient 0 diffuse 0.85 specular 0.2 roughness 0.03 }
    translate z * (Front + 0.9)
  }
  object { Tube translate <-1.9, 0, Front + 1.3> }
  object { Message scale <0.96, 0.96, 1> translate <-1.9, 0, Front + 0.33> }
  object { Knob rotate z * -35 translate <8.75, 4.6, Front + 0.4> }
  object { Knob rotate z * 50 translate <8.75, 1.3, Front + 0.4> }
  // The loudspeaker's slots.
  #for (I, 0, 5)
    box {
      <7.4, -1.6 - I * 0.85, Front + 0.35>, <10.1, -1.25 - I * 0.85, Front + 0.6>
      texture { Black_plastic }
    }
  #end
  // Feet and aerial.
  #for (Side, -1, 1, 2)
    cone { <Side * 8.5, -Tv_h + 0.2, -4>, 0.75, <Side * 9.4, -Tv_h - 1.9, -5>, 0.42 texture { Chrome } }
    cone { <Side * 8.5, -Tv_h + 0.2, 4>, 0.75, <Side * 9.4, -Tv_h - 1.9, 5>, 0.42 texture { Chrome } }
    cylinder { <0, Tv_h, 2>, <Side * 5.2 - 0.4, Tv_h + 4.6, 3>, 0.14 texture { Chrome } }
    sphere { <Side * 5.2 - 0.4, Tv_h + 4.6, 3>, 0.42 texture { Chrome } }
  #end
  sphere { <0, Tv_h - 0.1, 2>, 1.5 texture { Black_plastic } }
}

object {
  Television
  rotate y * 9
  translate <6.6, Board_top + Tv_h + 1.9, 4>
}

// ---- The beer ------------------------------------------------------------------------------------------------

#declare Glass = material {
  texture {
    pigment { rgbf <0.985, 0.995, 0.99, 0.98> }
    finish { ambient 0 diffuse 0 specular 0 reflection { 0.0, 1.0 fresnel on } conserve_energy }
  }
  interior { ior 1.5 }
}

#declare Beer = material {
  texture {
    pigment { rgbf <1.0, 0.66, 0.13, 1> }
    finish { ambient 0 diffuse 0 specular 0 }
  }
  interior { ior 1.34 }
}

#declare Mug_r = 4.5;
#declare Mug_h = 14.4;
#declare Wall = 0.45;
#declare Floor = 1.3;
#declare Level = 10.6; // of the beer; the foam stands on it

#declare Mug_body = difference {
  union {
    cylinder { <0, 0.25, 0>, <0, Mug_h - Wall / 2, 0>, Mug_r }
    cylinder { <0, 0, 0>, <0, 0.5, 0>, Mug_r - 0.25 }
    torus { Mug_r - 0.25, 0.25 translate y * 0.25 }
    torus { Mug_r - Wall / 2, Wall / 2 translate y * (Mug_h - Wall / 2) }
  }
  cylinder { <0, Floor, 0>, <0, Mug_h + 1, 0>, Mug_r - Wall }
  // Round dimples, three rows of ten.
  #for (Row, 0, 2)
    #for (I, 0, 9)
      sphere {
        0, 1.0
        scale <1.18, 1.5, 0.34>
        translate <0, 2.6 + Row * 3.35, -Mug_r - 0.06>
        rotate y * (I * 36 + 9)
      }
    #end
  #end
}

#declare Handle = difference {
  torus { 3.5, 0.72 rotate x * 90 scale <0.92, 1.22, 1> translate <-Mug_r + 0.1, Mug_h * 0.50, 0> }
  cylinder { <0, -1, 0>, <0, Mug_h + 1, 0>, Mug_r - 0.15 }
}

#declare Mug = union {
  merge {
    object { Mug_body }
    object { Handle }
    material { Glass }
    photons { target reflection on refraction on }
  }
  cylinder {
    <0, Floor - 0.002, 0>, <0, Level, 0>, Mug_r - Wall + 0.002
    material { Beer }
    photons { target reflection off refraction on }
  }
  // Bubbles on their way up.
  #declare Seed = seed(7);
  #for (I, 1, 60)
    #declare Angle = rand(Seed) * 2 * pi;
    #declare Radius = (Mug_r - Wall - 0.2) * sqrt(rand(Seed));
    sphere {
      <Radius * cos(Angle), Floor + 0.3 + rand(Seed) * (Level - Floor - 0.4), Radius * sin(Angle)>,
      0.05 + 0.06 * rand(Seed)
      pigment { rgbt <1, 0.93, 0.66, 0.55> }
      finish { ambient 0 diffuse 0 emission 0.75 }
      no_shadow
      photons { pass_through }
    }
  #end
  // The head: a cushion of foam that swells over the rim, with a froth of larger bubbles round its edge.
  union {
    cylinder { <0, Level, 0>, <0, Mug_h - 0.5, 0>, Mug_r - Wall + 0.004 }
    superellipsoid { <1, 0.55> rotate x * 90 scale <Mug_r - Wall + 0.004, 1.75, Mug_r - Wall + 0.004> translate y * (Mug_h - 0.35) }
    #declare Froth = seed(3);
    #for (I, 1, 160)
      #declare Angle = rand(Froth) * 2 * pi;
      #declare Radius = (Mug_r - Wall - 0.5) * sqrt(rand(Froth));
      #declare Rise = 1.55 * sqrt(sqrt(1 - pow(Radius / (Mug_r - Wall), 4)));
      sphere { <Radius * cos(Angle), Mug_h - 0.35 + Rise, Radius * sin(Angle)>, 0.14 + 0.3 * rand(Froth) }
    #end
    pigment { rgb <1.0, 0.955, 0.86> }
    normal { granite 0.15 scale 0.8 }
    finish { ambient 0 diffuse 0.75 emission 0.42 }
  }
}

// The coaster under it: white felt with a red ring.
#declare Coaster = cylinder {
  <0, 0, 0>, <0, 0.3, 0>, 6.0
  pigment {
    cylindrical
    scale 6.0
    color_map {
      [0.00 rgb <0.97, 0.93, 0.84>]
      [0.05 rgb <0.97, 0.93, 0.84>]
      [0.05 rgb <0.78, 0.03, 0.03>]
      [0.20 rgb <0.78, 0.03, 0.03>]
      [0.20 rgb <0.97, 0.93, 0.84>]
      [1.00 rgb <0.97, 0.93, 0.84>]
    }
  }
  normal { granite 0.08 scale 0.2 }
  finish { ambient 0 diffuse 0.85 }
}

object { Coaster rotate y * 20 translate <-12.2, Board_top, -4> }
object { Mug rotate y * 14 translate <-12.2, Board_top + 0.305, -4> }

// ---- Pretzel and crown caps -----------------------------------------------------------------------------------

#declare Crust = texture {
  pigment {
    bozo
    scale 0.7
    color_map {
      [0.0 rgb <0.38, 0.13, 0.03>]
      [0.6 rgb <0.52, 0.21, 0.05>]
      [1.0 rgb <0.66, 0.33, 0.10>]
    }
  }
  normal { bumps 0.15 scale 0.5 }
  finish { ambient 0 diffuse 0.85 specular 0.35 roughness 0.03 }
}

// One rope from end to end: up, over the cross and round.
#declare Rope = spline {
  cubic_spline
  -0.1, <-2.6, 0, 3.0>
  0.00, <-2.1, 0.35, 2.3>
  0.14, <-0.6, 0.55, 0.3>
  0.24, <0.7, 0.75, -0.6>
  0.36, <2.8, 0.05, 0.0>
  0.42, <3.2, 0, 1.4>
  0.50, <0, 0, 3.1>
  0.58, <-3.2, 0, 1.4>
  0.64, <-2.8, 0.05, 0.0>
  0.76, <-0.7, 0.05, -0.6>
  0.86, <0.6, 0.35, 0.3>
  1.00, <2.1, 0.35, 2.3>
  1.10, <2.6, 0, 3.0>
}

#declare Grains = seed(11);

#declare Pretzel = union {
  #for (I, 0, 400)
    #declare T = I / 400;
    sphere { Rope(T), 0.42 + 0.26 * pow(sin(pi * T), 2) }
  #end
  texture { Crust }
}

#declare Salt = union {
  #for (I, 1, 70)
    #declare T = 0.06 + 0.88 * rand(Grains);
    #declare R = 0.42 + 0.26 * pow(sin(pi * T), 2);
    #declare Tilt = (rand(Grains) - 0.5) * 1.6;
    box {
      -0.10, 0.10
      rotate <rand(Grains), rand(Grains), rand(Grains)> * 90
      translate Rope(T) + <sin(Tilt) * 0.6, cos(Tilt), sin(Tilt) * 0.6> * R
    }
  #end
  pigment { rgb 0.98 }
  finish { ambient 0 diffuse 0.9 emission 0.1 specular 0.4 roughness 0.01 }
}

union {
  object { Pretzel }
  object { Salt }
  scale 1.12
  rotate y * -24
  translate <3.4, Board_top + 0.62, -15.2>
}

// A crown cap: a disc whose skirt has twenty-one flutes.
#macro Cap(Paint)
  union {
    cylinder { <0, 0.55, 0>, <0, 0.62, 0>, 1.25 }
    torus { 1.25, 0.14 translate y * 0.48 }
    #for (I, 0, 20)
      cone { <1.50, 0.02, 0>, 0.17, <1.30, 0.5, 0>, 0.10 rotate y * I * 360 / 21 }
    #end
    difference {
      cone { <0, 0, 0>, 1.5, <0, 0.5, 0>, 1.3 }
      cone { <0, -0.1, 0>, 1.35, <0, 0.4, 0>, 1.2 }
    }
    texture {
      pigment { rgb Paint }
      finish { ambient 0 diffuse 0.7 specular 0.7 roughness 0.01 metallic reflection { 0.12 } }
    }
  }
#end

object { Cap(<0.02, 0.30, 0.10>) translate <11.6, Board_top, -12.0> }
object { Cap(<0.85, 0.55, 0.06>) rotate x * -24 translate <14.6, Board_top + 0.1, -10.6> }

// ---- The picture's border: runs out into the page's white -----------------------------------------------------

#declare Ahead = vnormalize(Target - Eye);
#declare Half_w = tan(radians(36.5 / 2)); // of the picture, at distance 1

#declare Fade = function(x, y, z) { pow(pow(abs(x), 5) + pow(abs(y), 5), 1 / 5) } // 1 at the middle of each side

box {
  <-1.2, -1.2, 0>, <1.2, 1.2, 0.0001>
  pigment {
    function { min(1, max(0, (Fade(x, y, 0) - 0.80) / 0.17)) }
    color_map {
      [0.00 rgbt <1, 1, 1, 1>]
      [0.25 rgbt <1, 1, 1, 0.90>]
      [0.50 rgbt <1, 1, 1, 0.50>]
      [0.75 rgbt <1, 1, 1, 0.12>]
      [1.00 rgbt <1, 1, 1, 0>]
    }
  }
  finish { ambient 0 diffuse 0 emission 1 }
  scale <Half_w, Half_w * 256 / 410, 1>
  // From the z axis to the line of sight.
  rotate x * -degrees(asin(Ahead.y))
  rotate y * degrees(atan2(Ahead.x, Ahead.z))
  translate Eye + Ahead
  no_shadow
  no_reflection
  photons { pass_through }
}
