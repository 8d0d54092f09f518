#include "clitext.h"
#include "command.h"

#include "tessaly/registrystore.h"
#include "veldra/registration/clsidlookup.h"
#include "veldra/registration/registration.h"

#include <QCommandLineParser>

int runRegister(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(cliText(CliText::RegisterDescription));
    const QCommandLineOption file(QStringLiteral("file"),
                                  cliText(CliText::RegistryFileOption).arg(tessaly::RegistryStore::defaultFileName()),
                                  QStringLiteral("PATH"), tessaly::RegistryStore::defaultFileName());
    const QCommandLineOption remove(QStringLiteral("remove"), cliText(CliText::RemoveOption));
    parser.addOption(file);
    parser.addOption(remove);
    if (const auto status = parseCommandLine(parser, arguments, QStringLiteral("register")))
        return *status;
    if (!parser.positionalArguments().isEmpty()) {
        err() << "veldra register: " << cliText(CliText::RegisterUsage) << Qt::endl;
        return exitcode::badInput;
    }
    tessaly::RegistryStore store;
    store.load(parser.value(file));
    if (parser.isSet(remove))
        veldra::Registration::unregisterClasses(store);
    else
        veldra::Registration::registerClasses(store);
    store.save(parser.value(file));
    for (const QString &progId : veldra::Registration::progIds())
        out() << (parser.isSet(remove) ? QStringLiteral("removed ") : QString()) << progId
              << (parser.isSet(remove) ? QString() : u' ' + veldra::Registration::classIdFor(progId)) << '\n';
    return exitcode::ok;
}
