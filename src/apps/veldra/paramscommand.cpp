#include "clitext.h"
#include "command.h"
#include "commandinput.h"

#include "dataservice/dataservice.h"
#include "host/componentsession.h"
#include "host/livelists.h"
#include "host/parameterchoices.h"
#include "host/parameterliteral.h"

#include "tessaly/namemap.h"
#include "tessaly/variant.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

#include <QCommandLineParser>

namespace {

// The lines under a parameter: its settings, then the values a person may choose from.
void printChoices(host::ParameterChoices &choices, const host::ComponentSession &session, const QString &reference,
                  bool fromList, const QString &search)
{
    const host::ParameterSetting *setting = session.settings().find(reference);
    if (setting && setting->multiple)
        out() << "  " << cliText(CliText::ParamSeveralValues) << '\n';
    if (setting && !setting->relativeDefault.isEmpty()) {
        const auto date = host::relativeDate(setting->relativeDefault, QDate::currentDate());
        out() << "  " << cliText(CliText::ParamRelativeDefault)
                             .arg(setting->relativeDefault, date ? host::dateLiteral(*date, choices.provider()) : QString())
              << '\n';
    }
    const bool live = setting && setting->list.isSet();
    if (!fromList && !live)
        return;
    const host::ListPage page = choices.page(reference, search);
    if (live && page.live) {
        const host::RunTarget target = session.source().target(host::targetOf(*session.definition()));
        out() << "  " << cliText(CliText::ParamLiveList).arg(target.provider, target.dsn, setting->list.table) << '\n';
    } else if (live) {
        out() << "  " << cliText(CliText::ParamStoredList) << '\n';
    }
    for (const host::ListEntry &entry : page.entries)
        out() << "  " << entry.literal << " = " << entry.text << '\n';
    if (page.more)
        out() << "  " << cliText(CliText::ParamMore) << '\n';
    if (!page.note.isEmpty())
        err() << "veldra params: " << page.note << Qt::endl;
}

} // namespace

int runParams(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::ParamsDescription));
    parser.addPositionalArgument(QStringLiteral("DOC"), cliText(CliText::DocArgument));
    const ParameterOptions options;
    const QCommandLineOption search(QStringLiteral("search"), cliText(CliText::SearchOption), QStringLiteral("TEXT"));
    const QCommandLineOption save(QStringLiteral("save"), cliText(CliText::SaveOption), QStringLiteral("OUT"));
    options.addTo(parser);
    parser.addOptions({ search, save });
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("params")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra params: " << cliText(CliText::GiveOneDoc).arg(QStringLiteral("params")) << Qt::endl;
        return exitcode::badInput;
    }
    const auto service = std::make_shared<const dataservice::DataService>();
    host::LiveLists lists(service);
    host::ComponentSession session;
    loadDocument(session, parser.positionalArguments().constFirst());
    applyParameterOptions(session, parser, options, QStringLiteral("params"), lists, *service);
    if (parser.isSet(save))
        session.save(parser.value(save));
    const auto parameters = session.definition()->parameters();
    const auto values = session.parameterValues();
    if (!parameters || parameters->isEmpty()) {
        out() << cliText(CliText::NoParameters) << '\n';
        return exitcode::ok;
    }
    host::ParameterChoices choices(session.host(), session.settings(), &lists, session.source());
    // One block per parameter:
    //   @@@Region  chosen from a list  "Region"
    //     value: 'NE'
    //     'NE' = North East
    for (int i = 0; i < parameters->count(); ++i) {
        const QString reference = parameters->key(i);
        const auto parameter = parameters->objectAt<veldra::ParamInfo>(i);
        if (!parameter)
            continue;
        const bool fromList = parameter->paramType() == veldra::ParamInfo::ChosenFromList;
        out() << reference << "  " << cliText(fromList ? CliText::ParamChosenFromList : CliText::ParamTypedIn);
        if (!parameter->title().isEmpty())
            out() << "  \"" << parameter->title() << '"';
        out() << '\n';
        QVariant value;
        const QString current = values && values->lookup(reference, &value) ? tessaly::variant::toText(value) : QString();
        out() << "  " << (current.isEmpty() ? cliText(CliText::ParamNoValue).arg(reference) : cliText(CliText::ParamValue).arg(current))
              << '\n';
        printChoices(choices, session, reference, fromList, parser.value(search));
    }
    return exitcode::ok;
}
