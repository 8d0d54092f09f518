#include "cliuiservice.h"

#include "command.h"

#include "veldra/resources/stringtable.h"

void CliUiService::report(const QString &title, const QStringList &lines)
{
    if (veldra::StringTable::language() != veldra::Language::Japanese) {
        m_console.report(title, lines);
        return;
    }
    // One line, as the console service writes it, with full-width punctuation.
    auto oneLine = [](QString text) { return text.replace(u'\n', u' ').replace(u'\r', u' '); };
    QString text = oneLine(title) + u'：' + oneLine(lines.value(0));
    if (lines.size() > 1) {
        QStringList details;
        for (qsizetype i = 1; i < lines.size(); ++i)
            details.append(oneLine(lines.at(i)));
        text += u'（' + details.join(u'、') + u'）';
    }
    err() << text << Qt::endl;
}
