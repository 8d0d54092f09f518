#pragma once

#include <QStringList>
#include <QVariant>

namespace tessaly {
class ModelHost;
}

namespace host {

// The inputs a host lets a person set by name (the command line's --set, a query string):
// "selection", "TopN", "OrderBy" and "OrderByAscendant" where the query takes them at run
// time, "UpdateRequest", and one slot per parameter.
QStringList inputNames(const tessaly::ModelHost &host);

// The value to write into input name, once it is clear the component can use it: an ordering
// column may be given by its display name (its alias), as the studio's choice shows it, and
// becomes the text ORDER BY takes. Raises tessaly::Error (InvalidArgument) naming what the
// component cannot use: a name that is no input, a selection item that names no column or
// expression, a row count or ordering the query does not take at run time, an ordering column
// that is not one of its choices. Whether the value suits the slot's type is the slot's to say.
QVariant acceptInput(const tessaly::ModelHost &host, const QString &name, const QString &value);

} // namespace host
