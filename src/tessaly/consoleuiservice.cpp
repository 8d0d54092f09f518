#include "tessaly/consoleuiservice.h"

#include <cstdio>

namespace tessaly {

namespace {
// One line per message: line breaks inside a text would split it.
QString oneLine(QString text)
{
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    text.replace(u'\r', u' ');
    text.replace(u'\n', u' ');
    return text;
}

QString line(const QString &title, const QString &text)
{
    return title.isEmpty() ? oneLine(text) : oneLine(title) + QLatin1String(": ") + oneLine(text);
}
} // namespace

ConsoleUiService::ConsoleUiService()
    : m_sink([](const QString &text) {
          std::fputs(text.toLocal8Bit().append('\n').constData(), stderr);
          std::fflush(stderr);
      })
{
}

ConsoleUiService::ConsoleUiService(LineSink sink) : m_sink(std::move(sink)) {}

UiService::Answer ConsoleUiService::message(const QString &text, const QString &title, Buttons buttons)
{
    switch (buttons) {
    case Buttons::Ok:
        m_sink(line(title, text));
        return Answer::Ok;
    case Buttons::OkCancel:
    case Buttons::SaveDiscardCancel:
        m_sink(line(title, text) + QLatin1String(" [no one to ask: Cancel]"));
        return Answer::Cancel;
    case Buttons::YesNo:
        break;
    }
    m_sink(line(title, text) + QLatin1String(" [no one to ask: No]"));
    return Answer::No;
}

int ConsoleUiService::execDialog(QDialog &)
{
    qWarning("ConsoleUiService: a modal dialog was asked for on a host without windows");
    return 0; // QDialog::Rejected, without linking the widgets for it
}

void ConsoleUiService::report(const QString &title, const QStringList &lines)
{
    QString text = line(title, lines.value(0));
    if (lines.size() > 1) {
        QStringList details;
        for (qsizetype i = 1; i < lines.size(); ++i)
            details.append(oneLine(lines.at(i)));
        text += QLatin1String(" (") + details.join(QLatin1String(", ")) + u')';
    }
    m_sink(text);
}

} // namespace tessaly
