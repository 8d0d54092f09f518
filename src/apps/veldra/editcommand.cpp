#include "command.h"
#include "clitext.h"
#include "cliuiservice.h"
#include "componentsession.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
#include "tessaly/componentdocument.h"
#include "tessaly/error.h"
#include "tessaly/widgets/widgetuiservice.h"
#include "veldra/records/sqlinfo.h"
#include "veldra/wizard/frmwizard.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>

namespace {

// Platforms that draw nowhere a person could see: the wizard would wait for ever.
bool showsNoWindows(const QString &platform)
{
    return platform == u"offscreen" || platform == u"minimal";
}

} // namespace

bool editNeedsWidgets()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return true; // Qt then says itself what is wrong with the platform named
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

int runEdit(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::EditDescription));
    parser.addPositionalArgument(QStringLiteral("DOC"), cliText(CliText::EditDocArgument));
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("edit")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra edit: " << cliText(CliText::GiveOneDoc).arg(QStringLiteral("edit")) << Qt::endl;
        return exitcode::badInput;
    }
    const QString document = parser.positionalArguments().constFirst();

    // A bad document is said before any window opens.
    ComponentSession session;
    if (QFileInfo::exists(document)) {
        const QByteArray data = readInput(document);
        if (!tessaly::ComponentDocument::looksLikeComponentDocument(data))
            throw tessaly::Error(tessaly::ErrorNumber::InvalidArgument,
                                 cliText(CliText::EditWantsComponent).arg(inputName(document)));
        session.load(data, inputName(document));
    }

    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        err() << "veldra edit: " << cliText(CliText::NoDisplay) << Qt::endl;
        return exitcode::noResult;
    }
    if (showsNoWindows(QGuiApplication::platformName())) {
        err() << "veldra edit: " << cliText(CliText::PlatformShowsNoWindows).arg(QGuiApplication::platformName())
              << Qt::endl;
        return exitcode::noResult;
    }

    tessaly::UiService::setInstance(std::make_shared<tessaly::WidgetUiService>());
    veldra::frmWizard wizard;
    const bool shown = wizard.StartWizard(
            session.model(), std::make_shared<dataservice::LocalServiceProxy>(std::make_shared<dataservice::DataService>()),
            session.definition());
    tessaly::UiService::setInstance(std::make_shared<CliUiService>());
    if (!shown || wizard.result() != QDialog::Accepted)
        return exitcode::ok;
    session.save(document);
    return exitcode::ok;
}
