#include "hosts/page/gl/driver.h"

namespace page::gl {

namespace {

const Driver* g_driver;

} // namespace

void set_driver(const Driver& driver) { g_driver = &driver; }

const Driver& driver() { return *g_driver; }

} // namespace page::gl
