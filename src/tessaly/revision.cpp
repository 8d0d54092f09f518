#include "tessaly/revision.h"

#include <atomic>

namespace tessaly {

quint64 Revision::next()
{
    static std::atomic<quint64> last { 0 };
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

} // namespace tessaly
