#include "resultprinter.h"

#include "tableprinter.h"
#include "xmlprinter.h"

#include "host/csvprinter.h"
#include "host/jsonprinter.h"

std::unique_ptr<ResultPrinter> createPrinter(const QString &formatName, OutputFile &out)
{
    const QString format = formatName.toLower();
    if (format == u"table")
        return std::make_unique<TablePrinter>(out);
    if (format == u"csv")
        return std::make_unique<host::CsvPrinter>(out);
    if (format == u"json")
        return std::make_unique<host::JsonPrinter>(out);
    if (format == u"xml")
        return std::make_unique<XmlPrinter>(out);
    return nullptr;
}
