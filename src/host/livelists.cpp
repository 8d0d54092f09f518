#include "host/livelists.h"

#include "host/hosttext.h"
#include "host/parameterliteral.h"

#include "dataservice/dataservice.h"
#include "dataservice/rowsink.h"
#include "tessaly/error.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/component/parameterreference.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

#include <QMutexLocker>
#include <QXmlStreamWriter>

namespace host {

namespace {

constexpr int SearchLimit = 100; // characters of a search; SQLite takes LIKE patterns of 256

// The rows of a list request: the value (and the shown text) of each, as literals.
class EntrySink final : public dataservice::RowSink
{
public:
    EntrySink(QString provider) : m_provider(std::move(provider)) { }

    QList<ListEntry> entries;

    void startTable(const QList<QByteArray> &) override { }
    void startRecord() override { m_values.clear(); }
    void value(const char *utf8, qsizetype size) override
    {
        const QString text = QString::fromUtf8(utf8, size);
        m_values.append(ListEntry{ textLiteral(text, m_provider), text });
    }
    void numberValue(const char *text, qsizetype size) override
    {
        const QString number = QString::fromUtf8(text, size);
        m_values.append(ListEntry{ number, number });
    }
    void booleanValue(bool value) override
    {
        const QString word = value ? QStringLiteral("TRUE") : QStringLiteral("FALSE");
        m_values.append(ListEntry{ word, word.toLower() });
    }
    void blobValue(const char *, qsizetype) override { m_values.append(ListEntry{}); }
    void nullValue() override { m_values.append(ListEntry{}); }
    void endRecord() override
    {
        // NULL and bytes cannot be written as a value to choose; they are left out.
        if (m_values.isEmpty() || m_values.first().literal.isEmpty())
            return;
        entries.append({ m_values.first().literal, m_values.last().text });
    }
    void endTable(qint64, bool, qint64) override { }

private:
    QString m_provider;
    QList<ListEntry> m_values;
};

QString escapedPattern(QString search)
{
    search.truncate(SearchLimit);
    search.replace(u'\\', QStringLiteral("\\\\")).replace(u'%', QStringLiteral("\\%")).replace(u'_', QStringLiteral("\\_"));
    return u'%' + search + u'%';
}

bool isPostgres(const QString &provider)
{
    return provider == u"PostgreSQL";
}

// An expression as text, for comparing with what a person typed.
QString asText(const QString &expression, const QString &provider)
{
    return isPostgres(provider) ? QStringLiteral("CAST(%1 AS TEXT)").arg(expression) : expression;
}

// The filter with each parameter reference replaced by its value, as the model fills the
// condition; the first reference without a value otherwise.
std::optional<QString> filledFilter(const QString &filter, const tessaly::NameMap *values, QString *waitingFor)
{
    QString text;
    bool complete = true;
    const QStringView rest = veldra::parameterreference::scan(filter, [&](QStringView before, QStringView reference) {
        text += before;
        QVariant value;
        const QString filled = values && values->lookup(reference.toString(), &value) ? tessaly::variant::toText(value)
                                                                                        : QString();
        if (filled.trimmed().isEmpty() && complete) {
            complete = false;
            *waitingFor = reference.toString();
        }
        text += filled;
    });
    text += rest;
    if (!complete)
        return std::nullopt;
    return text;
}

QByteArray listRequest(const RunTarget &target, const LiveList &list, const QStringList &conditions, int limit)
{
    QStringList columns{ list.valueColumn };
    if (!list.displayColumn.isEmpty() && list.displayColumn != list.valueColumn)
        columns.append(list.displayColumn);
    // Grouped by the shown column first, as the list is ordered: an index on it then serves both,
    // and the engine stops at the end of the page instead of sorting the whole table.
    QStringList group = columns;
    if (group.size() == 2)
        std::swap(group[0], group[1]);
    QString order = list.order.isEmpty() ? list.shownColumn() : list.order;
    if (list.descending)
        order += QStringLiteral(" DESC");
    // Then by the group's columns, in its order: a total order, which the same index gives.
    if (list.order.isEmpty() || list.order == list.shownColumn()) {
        const QString direction = list.descending ? QStringLiteral(" DESC") : QString();
        order.clear();
        for (const QString &column : group)
            order += (order.isEmpty() ? QString() : QStringLiteral(",")) + column + direction;
    }
    QStringList condition;
    for (const QString &part : conditions) {
        if (!part.trimmed().isEmpty())
            condition.append(u'(' + part + u')');
    }
    QByteArray request;
    QXmlStreamWriter xml(&request);
    xml.writeStartElement(QStringLiteral("query"));
    xml.writeStartElement(QStringLiteral("get"));
    xml.writeStartElement(QStringLiteral("content"));
    xml.writeCharacters(QStringLiteral("record"));
    xml.writeTextElement(QStringLiteral("field"), columns.join(u','));
    xml.writeEndElement();
    xml.writeStartElement(QStringLiteral("target"));
    xml.writeTextElement(QStringLiteral("provider"), target.provider);
    xml.writeTextElement(QStringLiteral("dsn"), target.dsn);
    xml.writeTextElement(QStringLiteral("catalog"), target.catalog);
    xml.writeTextElement(QStringLiteral("table"), list.table);
    xml.writeEndElement();
    if (!condition.isEmpty())
        xml.writeTextElement(QStringLiteral("condition"), condition.join(QStringLiteral(" AND ")));
    xml.writeTextElement(QStringLiteral("group"), group.join(u','));
    xml.writeTextElement(QStringLiteral("order"), order);
    xml.writeTextElement(QStringLiteral("rowcount"), QString::number(limit));
    xml.writeEndElement();
    xml.writeEndElement();
    return request;
}

// The values the query stores for the parameter ("Get from DB", or typed in the wizard).
QList<ListEntry> storedEntries(const veldra::SQLInfo &definition, const QString &reference, const QString &search)
{
    QList<ListEntry> entries;
    const auto parameter = definition.parameters() ? definition.parameters()->object<veldra::ParamInfo>(reference) : nullptr;
    if (!parameter || !parameter->selections())
        return entries;
    const auto &selections = parameter->selections();
    for (int i = 0; i < selections->count(); ++i) {
        const ListEntry entry{ selections->key(i), tessaly::variant::toText(selections->item(i)) };
        if (search.isEmpty() || entry.text.contains(search, Qt::CaseInsensitive))
            entries.append(entry);
    }
    return entries;
}

} // namespace

LiveLists::LiveLists(std::shared_ptr<const dataservice::DataService> service) : m_service(std::move(service)) { }

LiveLists::Fetched LiveLists::fetch(const QByteArray &request, const QString &provider, int limit, int cacheSeconds)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    {
        QMutexLocker lock(&m_mutex);
        const auto kept = m_cache.constFind(request);
        if (kept != m_cache.constEnd() && kept->at.secsTo(now) < cacheSeconds) {
            ++m_cacheHits;
            Fetched fetched{ kept->page, {} };
            fetched.page.cached = true;
            return fetched;
        }
    }
    EntrySink sink(provider);
    try {
        m_service->select(request, sink);
    } catch (const tessaly::Error &error) {
        return { {}, error.message() };
    }
    Fetched fetched;
    fetched.page.live = true;
    fetched.page.more = sink.entries.size() > limit;
    fetched.page.entries = sink.entries.mid(0, limit);
    if (cacheSeconds > 0) {
        QMutexLocker lock(&m_mutex);
        m_cache.insert(request, { now, fetched.page });
    }
    return fetched;
}

ListPage LiveLists::page(const veldra::SQLInfo &definition, const HostSettings &settings, const QString &reference,
                         const tessaly::NameMap *values, const SourceChoice &source, const QString &search, int limit)
{
    const ParameterSetting *setting = settings.find(reference);
    ListPage stored;
    stored.entries = storedEntries(definition, reference, search);
    if (!setting || !setting->list.isSet())
        return stored;
    QString waitingFor;
    const std::optional<QString> filter = filledFilter(setting->list.filter, values, &waitingFor);
    if (!filter) {
        stored.entries.clear();
        stored.note = hostText(HostText::ListWaits).arg(reference, waitingFor);
        return stored;
    }
    const RunTarget target = source.target(targetOf(definition));
    QStringList conditions{ *filter };
    if (!search.isEmpty()) {
        const QString like = isPostgres(target.provider) ? QStringLiteral("ILIKE") : QStringLiteral("LIKE");
        conditions.append(QStringLiteral("%1 %2 %3 ESCAPE '\\'")
                                  .arg(asText(setting->list.shownColumn(), target.provider), like,
                                       textLiteral(escapedPattern(search), target.provider)));
    }
    const QByteArray unsearched = listRequest(target, setting->list, { *filter }, limit + 1);
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (!search.isEmpty()) {
        QMutexLocker lock(&m_mutex);
        const auto complete = m_complete.constFind(unsearched);
        if (complete != m_complete.constEnd() && complete->at.secsTo(now) < std::max(TypingSeconds, setting->list.cacheSeconds)
            && search.contains(complete->search, Qt::CaseInsensitive)) {
            ++m_cacheHits;
            ListPage narrowed = complete->page;
            narrowed.cached = true;
            narrowed.entries.removeIf([&](const ListEntry &entry) { return !entry.text.contains(search, Qt::CaseInsensitive); });
            return narrowed;
        }
    }
    const Fetched fetched = fetch(search.isEmpty() ? unsearched : listRequest(target, setting->list, conditions, limit + 1),
                                  target.provider, limit, setting->list.cacheSeconds);
    if (!fetched.failure.isEmpty()) {
        stored.note = hostText(HostText::ListUnreadable).arg(reference, fetched.failure);
        return stored;
    }
    if (!search.isEmpty() && !fetched.page.more) {
        QMutexLocker lock(&m_mutex);
        m_complete.insert(unsearched, { now, search, fetched.page });
    }
    return fetched.page;
}

QStringList LiveLists::present(const veldra::SQLInfo &definition, const HostSettings &settings, const QString &reference,
                               const tessaly::NameMap *values, const SourceChoice &source, const QStringList &literals)
{
    const ParameterSetting *setting = settings.find(reference);
    if (!setting || !setting->list.isSet() || literals.isEmpty())
        return literals;
    QString waitingFor;
    const std::optional<QString> filter = filledFilter(setting->list.filter, values, &waitingFor);
    if (!filter)
        return {};
    const RunTarget target = source.target(targetOf(definition));
    const QStringList conditions{ *filter, QStringLiteral("%1 IN (%2)").arg(setting->list.valueColumn, joinLiterals(literals)) };
    const Fetched fetched = fetch(listRequest(target, setting->list, conditions, int(literals.size()) + 1),
                                  target.provider, int(literals.size()), setting->list.cacheSeconds);
    if (!fetched.failure.isEmpty())
        return literals;
    QStringList found;
    for (const QString &literal : literals) {
        for (const ListEntry &entry : fetched.page.entries) {
            if (entry.literal == literal || unquoted(entry.literal) == unquoted(literal)) {
                found.append(literal);
                break;
            }
        }
    }
    return found;
}

std::optional<ListEntry> LiveLists::match(const veldra::SQLInfo &definition, const HostSettings &settings,
                                          const QString &reference, const tessaly::NameMap *values,
                                          const SourceChoice &source, const QString &text)
{
    const ParameterSetting *setting = settings.find(reference);
    if (!setting || !setting->list.isSet())
        return std::nullopt;
    QString waitingFor;
    const std::optional<QString> filter = filledFilter(setting->list.filter, values, &waitingFor);
    if (!filter)
        return std::nullopt;
    const RunTarget target = source.target(targetOf(definition));
    const QString literal = textLiteral(text, target.provider);
    const QStringList conditions{ *filter, QStringLiteral("%1 = %3 OR %2 = %3")
                                                   .arg(asText(setting->list.valueColumn, target.provider),
                                                        asText(setting->list.shownColumn(), target.provider), literal) };
    const Fetched fetched = fetch(listRequest(target, setting->list, conditions, 2), target.provider, 1,
                                  setting->list.cacheSeconds);
    if (!fetched.failure.isEmpty() || fetched.page.entries.isEmpty())
        return std::nullopt;
    return fetched.page.entries.first();
}

void LiveLists::clear()
{
    QMutexLocker lock(&m_mutex);
    m_cache.clear();
    m_complete.clear();
}

int LiveLists::cacheHits() const
{
    QMutexLocker lock(&m_mutex);
    return m_cacheHits;
}

} // namespace host
