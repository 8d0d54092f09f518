#pragma once

namespace tessaly {

// The UI service's busy cursor for as long as it lives, also when a slow step raises.
class BusyCursor
{
public:
    BusyCursor();
    ~BusyCursor();
    BusyCursor(const BusyCursor &) = delete;
    BusyCursor &operator=(const BusyCursor &) = delete;
};

} // namespace tessaly
