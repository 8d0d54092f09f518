#pragma once

#include <QString>

#include <memory>
#include <optional>

namespace tessaly {
class NameMap;
}

namespace veldra {

class SQLInfo;

// What the model reads when it builds its request: the definition and the current values of
// its slots. Nothing is cached; every build reads them afresh.
struct RequestInputs
{
    const SQLInfo *query = nullptr;
    QString selection;                        // display names joined by ","
    const tessaly::NameMap *parameters = nullptr; // reference -> current value text
    qint32 topN = 0;
    QString orderBy;
    bool orderByAscendant = true;
};

// Turns a query definition and the component's current values into the XML request for the
// data service: "<query><get>" content, target, condition, group, order, row count "</get></query>".
class RequestBuilder
{
public:
    explicit RequestBuilder(const RequestInputs &inputs) : m_in(inputs) { }

    // The request text, or nothing when the definition has no fields or no complete target.
    std::optional<QString> build() const;
    // Why build() yields nothing ("no fields", "no provider", ...); empty when it yields a request.
    QString missingPiece() const;

    QString contentBlock() const;
    QString targetBlock() const;
    QString conditionBlock() const;
    QString groupBlock() const;
    QString orderBlock() const;
    QString rowCountBlock() const;
    QString tableNames() const;

    // "<", ">" and "&" as entities; nothing else changes.
    static QString escape(const QString &text);

private:
    // Calls visit(name) for each trimmed name of the selection slot, without copying it.
    template<typename Visit>
    void forEachSelectedName(Visit visit) const;

    RequestInputs m_in;
};

} // namespace veldra
