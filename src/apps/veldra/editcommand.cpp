#include "command.h"
#include "componentsession.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
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
    parser.setApplicationDescription(QStringLiteral(
            "Opens the query creation wizard on the component in DOC, or on a new component when DOC\n"
            "does not exist, against the configured data service. Finish saves the component into\n"
            "DOC; Quit leaves DOC as it was. Needs a display."));
    parser.addPositionalArgument(QStringLiteral("DOC"), QStringLiteral("a component document"));
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("edit")))
        return *status;
    if (parser.positionalArguments().size() != 1) {
        err() << "veldra edit: give exactly one DOC (see veldra edit --help)" << Qt::endl;
        return exitcode::badInput;
    }
    const QString document = parser.positionalArguments().constFirst();

    // A bad document is said before any window opens.
    ComponentSession session;
    if (QFileInfo::exists(document))
        session.load(document);

    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        err() << "veldra edit: no display to show the wizard on: neither DISPLAY nor WAYLAND_DISPLAY is set"
              << Qt::endl;
        return exitcode::noResult;
    }
    if (showsNoWindows(QGuiApplication::platformName())) {
        err() << "veldra edit: the display platform \"" << QGuiApplication::platformName()
              << "\" shows no windows; run it on a desktop" << Qt::endl;
        return exitcode::noResult;
    }

    tessaly::UiService::setInstance(std::make_shared<tessaly::WidgetUiService>());
    veldra::frmWizard wizard;
    const bool shown = wizard.StartWizard(
            session.model(), std::make_shared<dataservice::LocalServiceProxy>(std::make_shared<dataservice::DataService>()),
            session.definition());
    tessaly::UiService::setInstance(nullptr);
    if (!shown || wizard.result() != QDialog::Accepted)
        return exitcode::ok;
    session.save(document);
    return exitcode::ok;
}
