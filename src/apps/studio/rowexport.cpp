#include "rowexport.h"

#include "rowstore.h"

#include "outputerror.h"
#include "outputfile.h"
#include "resultprinter.h"
#include "tessaly/error.h"

#include <QSaveFile>

void exportRows(const RowStore &rows, const std::vector<quint32> &order, bool truncated, qint64 rowCap,
                const QString &format, const QString &fileName)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
    OutputFile out(file.handle());
    const std::unique_ptr<ResultPrinter> printer = ResultPrinter::create(format, out);
    try {
        rows.replay(*printer, order);
        printer->endTable(rows.rowCount(), truncated, rowCap);
    } catch (const OutputError &error) {
        file.cancelWriting();
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, QString::fromLocal8Bit(error.what())));
    }
    if (!file.commit())
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}
