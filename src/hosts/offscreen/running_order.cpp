#include "hosts/offscreen/running_order.h"
