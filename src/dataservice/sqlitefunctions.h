#pragma once

#include <chrono>
#include <map>

struct sqlite3;
struct sqlite3_stmt;

namespace dataservice {

// Replaces SQLite's printf (format), instr and replace on one connection with versions
// whose cost one call cannot push past the statement's deadline: the progress handler only
// looks at the clock between steps, and these three could take minutes within one step.
// printf refuses widths and precisions beyond the length limit, then formats with SQLite's
// own printf on a private in-memory connection; instr and replace look at the clock as
// they search.
class SqliteFunctions
{
public:
    using Clock = std::chrono::steady_clock;

    SqliteFunctions(sqlite3 *db, int lengthLimit);
    ~SqliteFunctions();
    SqliteFunctions(const SqliteFunctions &) = delete;
    SqliteFunctions &operator=(const SqliteFunctions &) = delete;

    // The running statement's deadline; *timedOut is set when a function stops at it.
    void setDeadline(Clock::time_point deadline, bool *timedOut);
    void clearDeadline();

    // For the C callbacks.
    bool pastDeadline();
    sqlite3_stmt *printer(int argumentCount);
    int lengthLimit() const { return m_lengthLimit; }

private:
    sqlite3 *m_printer = nullptr;
    std::map<int, sqlite3_stmt *> m_statements;
    int m_lengthLimit;
    Clock::time_point m_deadline = Clock::time_point::max();
    bool *m_timedOut = nullptr;
};

} // namespace dataservice
