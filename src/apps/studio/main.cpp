#include "studiowindow.h"

#include "tessaly/widgets/widgetuiservice.h"

#include <QApplication>
#include <QCommandLineParser>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("veldra-studio"));
    QApplication::setDesktopFileName(QStringLiteral("veldra-studio"));
    tessaly::UiService::setInstance(std::make_shared<tessaly::WidgetUiService>());

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Hosts a query component: its inputs, its request and the rows it gets."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("DOC"), QStringLiteral("a component document to open"),
                                 QStringLiteral("[DOC]"));
    parser.process(app);
    if (parser.positionalArguments().size() > 1) {
        parser.showHelp(2);
    }

    int status = 0;
    {
        StudioWindow window;
        if (!parser.positionalArguments().isEmpty())
            window.openDocument(parser.positionalArguments().constFirst());
        window.show();
        status = QApplication::exec();
    }
    tessaly::UiService::setInstance(nullptr);
    return status;
}
