#include "tessaly/zetvariable.h"

namespace tessaly {

zetVariable::~zetVariable() = default;

} // namespace tessaly
