#include "hosts/page/gl/attributes.h"

namespace page::gl {

Attributes g_attributes;

void reset_attributes() { g_attributes = {Float4{1, 1, 1, 1}, Float4{0, 0, 1, 0}, 0, 0, true}; }

} // namespace page::gl
