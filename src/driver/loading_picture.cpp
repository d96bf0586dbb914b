#include "driver/loading_picture.h"

#include "driver/loading.h"

void make_loading_picture() { loading_step(); }
