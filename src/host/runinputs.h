#pragma once

#include <QString>

#include <memory>

namespace tessaly {
class ModelHost;
class NameMap;
} // namespace tessaly

namespace veldra {
class SQLInfo;
}

namespace host {

// The run-time inputs of a component as they stand at one moment: the slots a person sets
// besides the definition, and the definition they were set for.
struct RunInputs
{
    std::shared_ptr<const veldra::SQLInfo> definition;
    QString selection;
    std::shared_ptr<tessaly::NameMap> parameters; // a copy: the model empties its own on a new definition
    qint32 topN = 0;
    QString orderBy;
    bool orderByAscendant = true;

    static RunInputs capture(const tessaly::ModelHost &host);
};

// Leaves the component runnable through its own slots once its definition is set: after the
// wizard's Finish, after a host opened a document, for a bare definition (no inputs before).
// Each input keeps what the person had set in before while it still applies, and otherwise
// starts where the definition says:
// - "selection": for the same definition, the names selected before; after an edit, those of
//   them the query still selects and every selection it gained; every selection when nothing
//   was selected (or all was);
// - "TopN", when the row count is a run-time parameter: the value set before, unless the
//   wizard's row count changed or none was set; then the wizard's row count;
// - "OrderBy" and "OrderByAscendant", when ordering is a run-time parameter: the column chosen
//   before unless the edit took it out of the choices, else the first choice; the direction
//   set before, else ascending;
// - a parameter chosen from a list: the value chosen before unless the edit took it out of the
//   list, else the list's first value; a typed-in parameter: the value typed before, else none
//   (a host names it as missing and asks for it).
// For the same definition (a host opening a document) only what is empty is filled in.
// Every input that applies is written, so that whatever shows it follows.
void seedRunInputs(tessaly::ModelHost &host, const RunInputs &before = {});

} // namespace host
