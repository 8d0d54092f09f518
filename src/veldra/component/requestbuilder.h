#pragma once

#include "veldra/records/displaynameindex.h"

#include <QString>

#include <memory>
#include <optional>

namespace tessaly {
class NameMap;
}

namespace veldra {

class ColumnInfo;
class SQLInfo;
class TextWriter;

// What the model reads when it builds its request: the definition and the current values of
// its slots.
struct RequestInputs
{
    const SQLInfo *query = nullptr;
    QString selection; // display names joined by ","
    const tessaly::NameMap *parameters = nullptr; // reference -> current value text
    qint32 topN = 0;
    QString orderBy;
    bool orderByAscendant = true;
};

// Turns a query definition and the component's current values into the XML request for the
// data service: "<query><get>" content, target, condition, group, order, row count
// "</get></query>".
class RequestBuilder
{
public:
    explicit RequestBuilder(const RequestInputs &inputs) : m_in(inputs) { }

    // The request text, or nothing when the definition has no fields or no complete target.
    std::optional<QString> build() const;
    // Why build() yields nothing ("no fields", "no provider", ...); empty when it yields a request.
    QString missingPiece() const;

    // Each block alone, as build() writes it; empty when the request leaves it out.
    QString contentBlock() const { return block(&RequestBuilder::appendContent); }
    QString targetBlock() const { return block(&RequestBuilder::appendTarget); }
    QString conditionBlock() const { return block(&RequestBuilder::appendCondition); }
    QString groupBlock() const { return block(&RequestBuilder::appendGroup); }
    QString orderBlock() const { return block(&RequestBuilder::appendOrder); }
    QString rowCountBlock() const { return block(&RequestBuilder::appendRowCount); }

    // "<", ">" and "&" as entities; nothing else changes.
    static QString escape(const QString &text);

private:
    // Each block appends to the text being written: a request is assembled without a string per
    // block.
    using Append = void (RequestBuilder::*)(TextWriter &out) const;
    QString block(Append append) const;
    void appendContent(TextWriter &out) const;
    void appendTarget(TextWriter &out) const;
    void appendCondition(TextWriter &out) const;
    void appendGroup(TextWriter &out) const;
    void appendOrder(TextWriter &out) const;
    void appendRowCount(TextWriter &out) const;
    static void appendSelectionName(TextWriter &out, const ColumnInfo &column);

    // Calls visit(name) for each trimmed name of the selection slot, without copying it.
    template<typename Visit>
    void forEachSelectedName(Visit visit) const;
    // The item a name of the selection slot shows; one index per build serves a long selection.
    const ColumnInfo *selectedItem(QStringView name) const;

    RequestInputs m_in;
    mutable std::optional<DisplayNameIndex> m_selected;
};

} // namespace veldra
