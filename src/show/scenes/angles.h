// Angles that several scenes step by, in radians. Both go back to 1 / (180 pi), with pi taken as 3.14159265,
// and stand written out so that the products made with them keep their last digit.
#pragma once

constexpr double kWave = 0.0017683882585972932; // 1 / (180 pi); a step of the ribbons is a hundred of these
constexpr double kBlockWave = 0.15915494327375637; // ninety of them: from one column of boxes to the next
