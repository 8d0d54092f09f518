#include "rowsink.h"

namespace dataservice {

RowSink::~RowSink() = default;

} // namespace dataservice
