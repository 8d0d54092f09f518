#include "server/componentrunner.h"

#include "server/answer.h"
#include "server/componentdirectory.h"

#include "dataservice/dataservice.h"
#include "host/componentsession.h"
#include "host/csvprinter.h"
#include "host/inputcheck.h"
#include "host/jsonprinter.h"
#include "host/livelists.h"
#include "host/parameterchoices.h"
#include "host/sourcechoice.h"
#include "host/rowoutput.h"
#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/component/padlayout.h"
#include "veldra/records/dbinfo.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/records/statementtext.h"
#include "veldra/resources/stringtable.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace server {

namespace {

// Rows on their way to the connection's thread.
class AnswerOutput : public host::RowOutput
{
public:
    explicit AnswerOutput(Answer &answer) : m_answer(answer) {}

protected:
    void deliver(const char *data, qsizetype size) override { m_answer.write(data, size_t(size)); }

private:
    Answer &m_answer;
};

QJsonArray entriesJson(const host::ListPage &page)
{
    QJsonArray entries;
    for (const host::ListEntry &entry : page.entries)
        entries.append(QJsonObject{ { QStringLiteral("value"), entry.literal }, { QStringLiteral("label"), entry.text } });
    return entries;
}

ApiError apiError(const tessaly::Error &error)
{
    return { statusFor(error.number()), error.number(), error.message() };
}

QString label(veldra::StringId id)
{
    return veldra::StringTable::text(id);
}

QString slotText(host::ComponentSession &session, const QString &slot)
{
    return tessaly::variant::toText(session.host().slotValue(slot));
}

// Why nothing is sent, worded as the command line words it, with the query parameter to give.
ApiError unsent(const host::CurrentRequest &request)
{
    if (!request.missingPiece.isEmpty())
        return { 422, tessaly::ErrorNumber::Fail,
                 QStringLiteral("the component yields no request: %1").arg(request.missingPiece) };
    QStringList lines;
    for (const host::MissingValue &missing : request.missingValues) {
        if (!missing.defined)
            lines.append(QStringLiteral("the condition refers to %1, which is no parameter of the query, so nothing "
                                        "is sent: define it in the wizard (veldra edit) or take it out of the condition")
                                 .arg(missing.reference));
        else if (missing.title.isEmpty())
            lines.append(QStringLiteral("%1 has no value, so nothing is sent: give one as the query parameter %1=...")
                                 .arg(missing.reference));
        else
            lines.append(QStringLiteral("%1 (\"%2\") has no value, so nothing is sent: give one as the query "
                                        "parameter %1=...").arg(missing.reference, missing.title));
    }
    return { 400, tessaly::ErrorNumber::InvalidArgument, lines.join(u'\n') };
}

} // namespace

ComponentRunner::ComponentRunner(const dataservice::DataService &service, const host::SourceChoice &source,
                                 std::shared_ptr<host::LiveLists> lists)
    : m_service(service), m_source(std::make_unique<host::SourceChoice>(source)), m_lists(std::move(lists))
{
    if (!m_lists) // the service outlives the runner
        m_lists = std::make_shared<host::LiveLists>(std::shared_ptr<const dataservice::DataService>(&service, [](auto *) {}));
}

ComponentRunner::ComponentRunner(const dataservice::DataService &service) : ComponentRunner(service, {}, nullptr)
{
}

ComponentRunner::~ComponentRunner() = default;

host::ComponentSession &ComponentRunner::session(const ComponentFile &file, const Inputs &inputs)
{
    if (m_kept.size() > 256 && !m_kept.contains(file.name))
        m_kept.clear(); // documents come and go; a worker does not hold on to all it ever saw
    Kept &kept = m_kept[file.name];
    if (!kept.session || kept.version != file.version) {
        kept = Kept();
        auto session = std::make_shared<host::ComponentSession>();
        session->load(file.bytes, file.name + QLatin1String(ComponentDirectory::Suffix));
        session->setSource(*m_source);
        for (const QString &name : host::inputNames(session->host()))
            kept.saved.insert(name, session->host().slotValue(name));
        kept.session = std::move(session);
        kept.version = file.version;
    }
    tessaly::ModelHost &host = kept.session->host();
    // The live lists may change any parameter they list: put back before the next request.
    QStringList touched = kept.session->settings().listOrder();
    for (const auto &input : inputs)
        touched.append(input.first);
    for (const QString &name : std::as_const(kept.touched)) {
        const auto saved = kept.saved.constFind(name);
        if (!touched.contains(name) && saved != kept.saved.cend())
            host.setSlotValue(name, *saved);
    }
    kept.touched = touched; // marked before they are set: a refused value may leave a slot changed
    return *kept.session;
}

host::ComponentSession &ComponentRunner::prepared(const ComponentFile &file, const Inputs &inputs)
{
    host::ComponentSession &component = session(file, inputs);
    QStringList names;
    QHash<QString, QStringList> values;
    for (const auto &[name, value] : inputs) {
        if (!names.contains(name))
            names.append(name);
        values[name].append(value);
    }
    host::ParameterChoices choices(component.host(), component.settings(), m_lists.get(), component.source());
    QSet<QString> given;
    const auto several = [&](const QString &name) {
        const host::ParameterSetting *setting = component.settings().find(name);
        return name.startsWith(u"@@@") && (values.value(name).size() > 1 || (setting && setting->multiple));
    };
    for (const auto &[name, value] : inputs) { // in the order given, as --set applies them
        if (!several(name))
            component.setInput(name, value);
        given.insert(name);
    }
    for (const QString &name : names) {
        if (!several(name))
            continue;
        component.setInput(name, QString()); // the input check names what is no input
        choices.choose(name, values.value(name));
    }
    choices.settle({}, given);
    return component;
}

QJsonObject ComponentRunner::describe(const ComponentFile &file)
{
    host::ComponentSession &component = prepared(file, {});
    const auto definition = component.definition();
    const QStringList names = host::inputNames(component.host());
    QJsonObject description{ { QStringLiteral("name"), file.name } };
    if (const auto &db = definition->dbInfo())
        description.insert(QStringLiteral("dataSource"),
                           QJsonObject{ { QStringLiteral("provider"), db->provider() },
                                        { QStringLiteral("dsn"), db->dsn() },
                                        { QStringLiteral("catalog"), db->catalog() } });
    QJsonObject inputs;
    inputs.insert(QStringLiteral("selection"),
                  QJsonObject{ { QStringLiteral("items"), QJsonArray::fromStringList(veldra::PadLayout::displayNames(*definition)) },
                               { QStringLiteral("value"), slotText(component, QStringLiteral("selection")) } });
    if (names.contains(u"TopN"))
        inputs.insert(QStringLiteral("TopN"), QJsonObject{ { QStringLiteral("label"), label(veldra::StringId::PadTopNLabel) },
                                                           { QStringLiteral("value"), slotText(component, QStringLiteral("TopN")) } });
    if (names.contains(u"OrderBy")) {
        QJsonArray choices;
        const auto orderChoices = veldra::PadLayout::orderChoices(*definition);
        for (int i = 0; i < orderChoices->count(); ++i)
            choices.append(QJsonObject{ { QStringLiteral("label"), orderChoices->key(i) },
                                        { QStringLiteral("value"), orderChoices->item(i).toString() } });
        inputs.insert(QStringLiteral("OrderBy"), QJsonObject{ { QStringLiteral("label"), label(veldra::StringId::PadOrderByLabel) },
                                                              { QStringLiteral("choices"), choices },
                                                              { QStringLiteral("value"), slotText(component, QStringLiteral("OrderBy")) } });
        inputs.insert(QStringLiteral("OrderByAscendant"),
                      QJsonObject{ { QStringLiteral("label"), label(veldra::StringId::PadDirectionLabel) },
                                   { QStringLiteral("value"), component.host().slotValue(QStringLiteral("OrderByAscendant")).toBool() } });
    }
    description.insert(QStringLiteral("inputs"), inputs);
    QJsonArray parameters;
    const auto values = component.parameterValues();
    host::ParameterChoices choices(component.host(), component.settings(), m_lists.get(), component.source());
    if (component.source().isSet())
        description.insert(QStringLiteral("source"), component.source().name());
    const auto defined = definition->parameters();
    for (int i = 0; defined && i < defined->count(); ++i) {
        const auto parameter = defined->objectAt<veldra::ParamInfo>(i);
        if (!parameter)
            continue;
        QVariant value;
        const QString reference = defined->key(i);
        QJsonObject entry{ { QStringLiteral("name"), reference },
                           { QStringLiteral("title"), parameter->title() },
                           { QStringLiteral("value"), values && values->lookup(reference, &value)
                                                              ? tessaly::variant::toText(value) : QString() } };
        const host::ParameterSetting *setting = component.settings().find(reference);
        if (setting && setting->multiple)
            entry.insert(QStringLiteral("multiple"), true);
        if (setting && !setting->relativeDefault.isEmpty())
            entry.insert(QStringLiteral("default"), setting->relativeDefault);
        if (parameter->paramType() == veldra::ParamInfo::ChosenFromList || (setting && setting->list.isSet())) {
            const host::ListPage page = choices.page(reference);
            entry.insert(QStringLiteral("kind"), QStringLiteral("list"));
            entry.insert(QStringLiteral("choices"), entriesJson(page));
            if (setting && setting->list.isSet()) {
                entry.insert(QStringLiteral("live"), page.live);
                entry.insert(QStringLiteral("dependsOn"),
                             QJsonArray::fromStringList(component.settings().dependencies(reference)));
            }
            if (page.more)
                entry.insert(QStringLiteral("more"), true);
            if (!page.note.isEmpty())
                entry.insert(QStringLiteral("note"), page.note);
        } else {
            entry.insert(QStringLiteral("kind"), parameter->paramType() == veldra::ParamInfo::TypedIn
                                                         ? QStringLiteral("typed") : QStringLiteral("none"));
        }
        parameters.append(entry);
    }
    description.insert(QStringLiteral("parameters"), parameters);
    description.insert(QStringLiteral("slots"), QJsonArray::fromStringList(names));
    return description;
}

void ComponentRunner::rows(const ComponentFile &file, const Inputs &inputs, Format format, Answer &answer)
{
    host::CurrentRequest request;
    try {
        request = prepared(file, inputs).request();
    } catch (const tessaly::Error &error) {
        answer.fail(apiError(error));
        return;
    }
    if (!request.ready()) {
        answer.fail(unsent(request));
        return;
    }
    AnswerOutput output(answer);
    std::unique_ptr<host::ResultPrinter> printer;
    if (format == Format::Csv) {
        answer.setContentType("text/csv; charset=utf-8");
        printer = std::make_unique<host::CsvPrinter>(output);
    } else {
        answer.setContentType("application/json");
        printer = std::make_unique<host::JsonPrinter>(output);
    }
    try {
        m_service.select(request.text.toUtf8(), *printer);
    } catch (const tessaly::Error &error) {
        answer.fail(apiError(error));
        return;
    }
    if (printer->truncated()) {
        answer.setHeader("Veldra-Truncated", "true");
        answer.setHeader("Veldra-Row-Cap", std::to_string(printer->rowCap()));
    }
    answer.countRows(printer->rows());
    answer.finish();
}

void ComponentRunner::list(const ComponentFile &file, const QString &reference, const QString &search,
                           const Inputs &inputs, Answer &answer)
{
    try {
        host::ComponentSession &component = prepared(file, inputs);
        if (!component.definition()->parameters() || !component.definition()->parameters()->contains(reference)) {
            answer.fail({ 404, tessaly::ErrorNumber::InvalidArgument,
                          QStringLiteral("%1 is no parameter of %2").arg(reference, file.name) });
            return;
        }
        host::ParameterChoices choices(component.host(), component.settings(), m_lists.get(), component.source());
        const host::ListPage page = choices.page(reference, search);
        QJsonObject body{ { QStringLiteral("name"), reference }, { QStringLiteral("choices"), entriesJson(page) },
                          { QStringLiteral("value"), choices.chosen(reference).join(u',') },
                          { QStringLiteral("live"), page.live }, { QStringLiteral("more"), page.more } };
        if (!page.note.isEmpty())
            body.insert(QStringLiteral("note"), page.note);
        const QByteArray bytes = QJsonDocument(body).toJson(QJsonDocument::Compact);
        answer.write(bytes.constData(), size_t(bytes.size()));
    } catch (const tessaly::Error &error) {
        answer.fail(apiError(error));
    }
}

void ComponentRunner::statement(const ComponentFile &file, const Inputs &inputs, bool engine, Answer &answer)
{
    try {
        if (engine) {
            const host::CurrentRequest request = prepared(file, inputs).request();
            if (!request.ready()) {
                answer.fail(unsent(request));
                return;
            }
            const QString text = m_service.statement(request.text.toUtf8());
            answer.setContentType("text/plain; charset=utf-8");
            const QByteArray bytes = text.toUtf8() + '\n';
            answer.write(bytes.constData(), size_t(bytes.size()));
            answer.finish();
            return;
        }
        const QString text = veldra::statementText(*session(file).definition());
        answer.setContentType("text/plain; charset=utf-8");
        const QByteArray bytes = text.toUtf8();
        answer.write(bytes.constData(), size_t(bytes.size()));
        answer.finish();
    } catch (const tessaly::Error &error) {
        answer.fail(apiError(error));
    }
}

} // namespace server
