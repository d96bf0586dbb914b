// The gyroscope room: three spinning ring sets between two slabs of boxes.
#include "scenes/scenes.h"

void gyro_prepare() {}
void gyro_start() {}
void gyro_render() {}
void gyro_stop() {}
void gyro_release() {}
