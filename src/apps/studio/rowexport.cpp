#include "rowexport.h"

#include "rowstore.h"

#include "host/csvprinter.h"
#include "host/jsonprinter.h"
#include "host/rowoutput.h"
#include "tessaly/error.h"

#include <QSaveFile>

namespace {

// Hands the rows' bytes to the file being written aside; a failed write stops the export.
class SaveFileOutput : public host::RowOutput
{
public:
    explicit SaveFileOutput(QSaveFile &file) : m_file(file) {}
    ~SaveFileOutput() override = default;

protected:
    void deliver(const char *data, qsizetype size) override
    {
        if (m_file.write(data, size) != size)
            throw tessaly::Error(tessaly::ErrorNumber::FileAccess,
                                 QStringLiteral("%1: %2").arg(m_file.fileName(), m_file.errorString()));
    }

private:
    QSaveFile &m_file;
};

std::unique_ptr<host::ResultPrinter> printerFor(const QString &format, host::RowOutput &out)
{
    if (format == u"json")
        return std::make_unique<host::JsonPrinter>(out);
    return std::make_unique<host::CsvPrinter>(out);
}

} // namespace

void exportRows(const RowStore &rows, const std::vector<quint32> &order, bool truncated, qint64 rowCap,
                const QString &format, const QString &fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
    SaveFileOutput out(file);
    const std::unique_ptr<host::ResultPrinter> printer = printerFor(format, out);
    rows.replay(*printer, order);
    printer->endTable(rows.rowCount(), truncated, rowCap);
    if (!file.commit())
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}
