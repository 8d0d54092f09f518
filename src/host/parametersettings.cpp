#include "host/parametersettings.h"

#include "host/hosttext.h"
#include "host/parameterliteral.h"

#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/xmltext.h"
#include "veldra/component/parameterreference.h"
#include "veldra/records/sqlinfo.h"

#include <QHash>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <functional>

namespace host {

namespace {

const QString hostElement = QStringLiteral("Host");
const QString parameterElement = QStringLiteral("Parameter");
const QString listElement = QStringLiteral("LiveList");

QString attribute(const QXmlStreamReader &xml, const QString &name)
{
    const QString value = xml.attributes().value(name).toString();
    if (xml.attributes().value(name + QStringLiteral("Escaped")) != u"true")
        return value;
    return tessaly::xmltext::unescape(value).value_or(value);
}

void writeAttribute(QXmlStreamWriter &xml, const QString &name, const QString &value)
{
    if (value.isEmpty())
        return;
    if (tessaly::xmltext::carriesUnchanged(value, true)) {
        xml.writeAttribute(name, value);
        return;
    }
    xml.writeAttribute(name, tessaly::xmltext::escape(value, true));
    xml.writeAttribute(name + QStringLiteral("Escaped"), QStringLiteral("true"));
}

[[noreturn]] void malformed(const QXmlStreamReader &xml, const QString &sourceName, const QString &what)
{
    throw tessaly::Error(tessaly::ErrorNumber::BadFileFormat,
                         QStringLiteral("%1:%2:%3: %4").arg(sourceName).arg(xml.lineNumber()).arg(xml.columnNumber()).arg(what));
}

LiveList readList(const QXmlStreamReader &xml, const QString &sourceName)
{
    LiveList list;
    list.table = attribute(xml, QStringLiteral("table"));
    list.valueColumn = attribute(xml, QStringLiteral("value"));
    list.displayColumn = attribute(xml, QStringLiteral("display"));
    list.filter = attribute(xml, QStringLiteral("filter"));
    list.order = attribute(xml, QStringLiteral("order"));
    list.descending = attribute(xml, QStringLiteral("descending")) == u"true";
    const QString cache = attribute(xml, QStringLiteral("cache"));
    if (!cache.isEmpty()) {
        bool ok = false;
        list.cacheSeconds = cache.toInt(&ok);
        if (!ok || list.cacheSeconds < 0)
            malformed(xml, sourceName, QStringLiteral("cache must be a whole number of seconds, not \"%1\"").arg(cache));
    }
    return list;
}

} // namespace

bool LiveList::operator==(const LiveList &other) const
{
    return table == other.table && valueColumn == other.valueColumn && displayColumn == other.displayColumn
            && filter == other.filter && order == other.order && descending == other.descending
            && cacheSeconds == other.cacheSeconds;
}

bool ParameterSetting::operator==(const ParameterSetting &other) const
{
    return reference == other.reference && multiple == other.multiple && relativeDefault == other.relativeDefault
            && list == other.list;
}

const ParameterSetting *HostSettings::find(const QString &reference) const
{
    for (const ParameterSetting &setting : parameters) {
        if (setting.reference == reference)
            return &setting;
    }
    return nullptr;
}

ParameterSetting &HostSettings::edit(const QString &reference)
{
    for (ParameterSetting &setting : parameters) {
        if (setting.reference == reference)
            return setting;
    }
    parameters.append(ParameterSetting{ reference, false, {}, {} });
    return parameters.last();
}

HostSettings HostSettings::read(const QByteArray &document, const QString &sourceName)
{
    HostSettings settings;
    QXmlStreamReader xml(document);
    // <Component> <Host> <Parameter> <LiveList>: depth 1 to 4.
    int depth = 0;
    bool inHost = false;
    while (!xml.atEnd()) {
        const QXmlStreamReader::TokenType token = xml.readNext();
        if (token == QXmlStreamReader::EndElement) {
            if (--depth == 1)
                inHost = false;
            continue;
        }
        if (token != QXmlStreamReader::StartElement)
            continue;
        ++depth;
        if (depth == 2 && xml.name() == hostElement) {
            inHost = true;
        } else if (inHost && depth == 3 && xml.name() == parameterElement) {
            ParameterSetting setting;
            setting.reference = attribute(xml, QStringLiteral("name"));
            if (setting.reference.isEmpty())
                malformed(xml, sourceName, QStringLiteral("<Parameter> needs a name"));
            setting.multiple = attribute(xml, QStringLiteral("multiple")) == u"true";
            setting.relativeDefault = attribute(xml, QStringLiteral("default"));
            settings.parameters.append(setting);
        } else if (inHost && depth == 4 && xml.name() == listElement && !settings.parameters.isEmpty()) {
            settings.parameters.last().list = readList(xml, sourceName);
        }
    }
    // The component's own reader reports a malformed document; settings read so far are moot then.
    return settings;
}

QByteArray HostSettings::writeInto(const QByteArray &document) const
{
    if (isEmpty())
        return document;
    QByteArray part;
    QXmlStreamWriter xml(&part);
    xml.setAutoFormatting(true);
    xml.setAutoFormattingIndent(1);
    xml.writeStartElement(hostElement);
    for (const ParameterSetting &setting : parameters) {
        xml.writeStartElement(parameterElement);
        writeAttribute(xml, QStringLiteral("name"), setting.reference);
        if (setting.multiple)
            xml.writeAttribute(QStringLiteral("multiple"), QStringLiteral("true"));
        writeAttribute(xml, QStringLiteral("default"), setting.relativeDefault);
        if (setting.list.isSet()) {
            const LiveList &list = setting.list;
            xml.writeStartElement(listElement);
            writeAttribute(xml, QStringLiteral("table"), list.table);
            writeAttribute(xml, QStringLiteral("value"), list.valueColumn);
            writeAttribute(xml, QStringLiteral("display"), list.displayColumn);
            writeAttribute(xml, QStringLiteral("filter"), list.filter);
            writeAttribute(xml, QStringLiteral("order"), list.order);
            if (list.descending)
                xml.writeAttribute(QStringLiteral("descending"), QStringLiteral("true"));
            xml.writeAttribute(QStringLiteral("cache"), QString::number(list.cacheSeconds));
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndElement();
    // Indented one level, as the parts beside it; the model's writer ends with </Component>.
    QByteArray indented = " " + part.trimmed().replace("\n", "\n ") + "\n";
    QByteArray result = document;
    const qsizetype end = result.lastIndexOf("</Component>");
    return end < 0 ? result : result.insert(end, indented);
}

void HostSettings::check(const veldra::SQLInfo &definition) const
{
    const auto fail = [](const QString &what) {
        throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument, what);
    };
    const auto &known = definition.parameters();
    for (const ParameterSetting &setting : parameters) {
        if (!known || !known->contains(setting.reference))
            fail(hostText(HostText::SettingForNoParameter).arg(setting.reference));
        if (!setting.relativeDefault.isEmpty() && !isRelativeDate(setting.relativeDefault))
            fail(hostText(HostText::NotARelativeDate).arg(setting.reference, setting.relativeDefault));
        if (setting.list.isSet() && setting.list.valueColumn.trimmed().isEmpty())
            fail(hostText(HostText::ListWithoutValue).arg(setting.reference));
    }
    // A cycle of lists would refresh each other for ever: find one by depth-first search.
    enum class Mark { None, Open, Done };
    QHash<QString, Mark> marks;
    QStringList path;
    std::function<void(const QString &)> visit = [&](const QString &reference) {
        marks[reference] = Mark::Open;
        path.append(reference);
        for (const QString &parent : dependencies(reference)) {
            if (marks.value(parent) == Mark::Open) {
                QStringList cycle = path.mid(path.indexOf(parent));
                cycle.append(parent);
                fail(hostText(HostText::ListCycle).arg(cycle.join(QStringLiteral(" -> "))));
            }
            if (marks.value(parent) == Mark::None)
                visit(parent);
        }
        path.removeLast();
        marks[reference] = Mark::Done;
    };
    for (const ParameterSetting &setting : parameters) {
        if (marks.value(setting.reference) == Mark::None)
            visit(setting.reference);
    }
}

void HostSettings::dropOthers(const veldra::SQLInfo &definition)
{
    const auto &known = definition.parameters();
    parameters.removeIf([&](const ParameterSetting &setting) { return !known || !known->contains(setting.reference); });
}

QStringList HostSettings::dependencies(const QString &reference) const
{
    const ParameterSetting *setting = find(reference);
    if (!setting || !setting->list.isSet())
        return {};
    QStringList references;
    veldra::parameterreference::scan(setting->list.filter, [&](QStringView, QStringView found) {
        if (!references.contains(found))
            references.append(found.toString());
    });
    return references;
}

QStringList HostSettings::dependents(const QString &reference) const
{
    QStringList found;
    QStringList pending{ reference };
    while (!pending.isEmpty()) {
        const QString parent = pending.takeFirst();
        for (const QString &candidate : listOrder()) {
            if (!found.contains(candidate) && candidate != reference && dependencies(candidate).contains(parent)) {
                found.append(candidate);
                pending.append(candidate);
            }
        }
    }
    // In the order they must be read again.
    QStringList ordered;
    for (const QString &candidate : listOrder()) {
        if (found.contains(candidate))
            ordered.append(candidate);
    }
    return ordered;
}

QStringList HostSettings::listOrder() const
{
    QStringList ordered;
    std::function<void(const QString &, int)> place = [&](const QString &reference, int depth) {
        const ParameterSetting *setting = find(reference);
        if (ordered.contains(reference) || !setting || !setting->list.isSet() || depth > parameters.size())
            return; // the depth bound keeps a cycle that check() would refuse from looping
        for (const QString &parent : dependencies(reference))
            place(parent, depth + 1);
        if (!ordered.contains(reference))
            ordered.append(reference);
    };
    for (const ParameterSetting &setting : parameters)
        place(setting.reference, 0);
    return ordered;
}

} // namespace host
