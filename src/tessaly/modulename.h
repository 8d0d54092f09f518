#pragma once

#include <QString>

namespace tessaly {

// The name of the loaded module (shared library or executable) that holds the given address:
// its file name without directory, "lib" prefix and extensions ("Veldra" for libVeldra.so.1).
QString moduleNameOf(const void *address);

} // namespace tessaly
