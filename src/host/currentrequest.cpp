#include "host/currentrequest.h"

#include "host/slotvalues.h"

#include "tessaly/error.h"
#include "tessaly/request.h"
#include "tessaly/variant.h"
#include "veldra/component/parameterreference.h"
#include "veldra/component/requestbuilder.h"
#include "veldra/records/paraminfo.h"

#include <QSet>

namespace host {

namespace {

// The model escapes only "<", ">" and "&"; a control character in a value would make the
// request text XML no parser accepts. Say so, and where, before anything is sent.
void checkRequestCharacters(const QString &request)
{
    for (qsizetype i = 0; i < request.size(); ++i) {
        const char16_t c = request.at(i).unicode();
        const bool pair = QChar::isHighSurrogate(c) && i + 1 < request.size() && request.at(i + 1).isLowSurrogate();
        const bool control = c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r';
        if (control || (QChar::isSurrogate(c) && !pair) || c == 0xFFFE || c == 0xFFFF) {
            const qsizetype open = request.lastIndexOf(u'<', i);
            const QString element = request.mid(open, request.indexOf(u'>', open) - open + 1);
            throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                                 QStringLiteral("the request cannot be built: character U+%1 at position %2 (in %3) "
                                                "cannot be carried by XML; a parameter value or a name holds it")
                                         .arg(int(c), 4, 16, QLatin1Char('0')).arg(i + 1).arg(element));
        }
        if (pair)
            ++i;
    }
}

} // namespace

QList<MissingValue> missingValues(const veldra::SQLInfo &definition, const tessaly::NameMap *values)
{
    QList<MissingValue> missing;
    QSet<QString> seen;
    const auto &parameters = definition.parameters();
    veldra::parameterreference::scan(definition.condition(), [&](QStringView, QStringView found) {
        const QString reference = found.toString();
        // A bare marker names nothing; the model gives it no slot either.
        if (found.size() == veldra::parameterreference::marker.size() || seen.contains(reference))
            return;
        seen.insert(reference);
        QVariant value;
        if (values && values->lookup(reference, &value) && !value.toString().trimmed().isEmpty())
            return;
        const auto parameter = parameters ? parameters->object<veldra::ParamInfo>(reference) : nullptr;
        missing.append({ reference, parameter ? parameter->title() : QString(), parameter != nullptr });
    });
    return missing;
}

CurrentRequest currentRequest(const tessaly::ModelHost &host)
{
    using namespace tessaly::variant;
    CurrentRequest current;
    const auto definition = definitionOf(host);
    const auto values = parameterValuesOf(host);
    const veldra::RequestInputs inputs{ definition.get(),
                                        toText(host.slotValue(QStringLiteral("selection"))),
                                        values.get(),
                                        toLong(host.slotValue(QStringLiteral("TopN"))),
                                        toText(host.slotValue(QStringLiteral("OrderBy"))),
                                        toBoolean(host.slotValue(QStringLiteral("OrderByAscendant"))) };
    current.missingPiece = veldra::RequestBuilder(inputs).missingPiece();
    if (definition)
        current.missingValues = missingValues(*definition, values.get());
    if (!current.missingPiece.isEmpty() || !current.missingValues.isEmpty())
        return current;
    const auto request = host.slotValue(QStringLiteral("request")).value<tessaly::RequestRef>();
    if (request) {
        checkRequestCharacters(request->text());
        current.text = request->text();
    }
    return current;
}

} // namespace host
