#pragma once

#include <QList>
#include <QString>

namespace tessaly {
class ModelHost;
class NameMap;
} // namespace tessaly

namespace veldra {
class SQLInfo;
}

namespace host {

// A parameter reference of the condition that has no value: sent as it is, it would leave a
// hole in the condition that the engine reports as a syntax error far from its cause.
struct MissingValue
{
    QString reference; // "@@@FromDate"
    QString title;     // the parameter's title; empty when it has none
    bool defined = true; // false: the query defines no such parameter, so no input can give it
};

// The request a component publishes now, or why none may be sent to a data service.
struct CurrentRequest
{
    QString text;         // empty when nothing may be sent
    QString missingPiece; // why the model publishes no request ("no fields: ..."); empty when it does
    QList<MissingValue> missingValues;

    bool ready() const { return !text.isEmpty(); }
};

// Every reference of the condition, once each in the order of the condition, whose value in
// values is missing, empty or only blanks. An empty value counts as none: it leaves the same
// hole (text compared with empty text carries its quotes in the value: '').
QList<MissingValue> missingValues(const veldra::SQLInfo &definition, const tessaly::NameMap *values);

// Reads the component's slots without asking for a rebuild. Raises tessaly::Error
// (InvalidArgument) when the request holds a character XML cannot carry, naming it and where.
CurrentRequest currentRequest(const tessaly::ModelHost &host);

} // namespace host
