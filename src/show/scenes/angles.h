// Angle steps in radians that several scenes use. Both derive from 1 / (180 pi), with pi taken as 3.14159265. They
// are written out in full, because the last digit of products with them counts.
#pragma once

constexpr double kWave = 0.0017683882585972932;    // 1 / (180 pi); a step along a ribbon is 100 of these
constexpr double kBlockWave = 0.15915494327375637; // 90 of them: from one column of boxes to the next
