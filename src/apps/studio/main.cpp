#include "studiotext.h"
#include "studiowindow.h"

#include "host/translations.h"
#include "tessaly/widgets/widgetuiservice.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>

int main(int argc, char **argv)
{
    // The command line is read before the window system is asked for, so --help works anywhere.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Hosts a query component: its inputs, its request and the rows it gets."));
    const QCommandLineOption help = parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("DOC"),
                                 QStringLiteral("a component document to open; without one, the document open last"),
                                 QStringLiteral("[DOC]"));
    const bool parsed = parser.parse(arguments);
    if (parsed && parser.isSet(help)) {
        QString text = parser.helpText();
        text.replace(QLatin1String("<executable_name>"), QLatin1String("veldra-studio"));
        std::fputs(qPrintable(text), stdout);
        return 0;
    }
    if (!parsed || parser.positionalArguments().size() > 1) {
        const QString error = parsed ? QStringLiteral("takes at most one document") : parser.errorText();
        std::fprintf(stderr, "veldra-studio: %s\n", qPrintable(error));
        return 2;
    }

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("veldra-studio"));
    QApplication::setDesktopFileName(QStringLiteral("veldra-studio"));
    installQtTranslations(app);
    host::installTranslations(app);
    tessaly::UiService::setInstance(std::make_shared<tessaly::WidgetUiService>());
    int status = 0;
    {
        StudioWindow window;
        if (!parser.positionalArguments().isEmpty())
            window.openDocument(parser.positionalArguments().constFirst());
        else
            window.reopenLastDocument();
        window.resize(window.sizeHint()); // now that the inputs are there
        window.show();
        status = QApplication::exec();
    }
    tessaly::UiService::setInstance(nullptr);
    return status;
}
