#include "tessaly/tagstream.h"

namespace tessaly {

TagStream::~TagStream() = default;

} // namespace tessaly
