#include "command.h"
#include "clitext.h"
#include "cliuiservice.h"
#include "editsession.h"

#include "tessaly/widgets/widgetuiservice.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QScopeGuard>

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

    EditSession edit(document); // a bad document or target is said before any window opens

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
    const auto restore = qScopeGuard([] { tessaly::UiService::setInstance(std::make_shared<CliUiService>()); });
    return edit.run();
}
