#pragma once

#include <QString>
#include <QStringList>

// How a document's rows are charted: kept beside the document by the studio, never in it.
struct ChartSettings
{
    bool shown = false;
    bool line = false; // a line chart; otherwise bars
    QString labels;    // the column that names the points
    QStringList values; // the columns of numbers charted

    bool operator==(const ChartSettings &other) const
    {
        return shown == other.shown && line == other.line && labels == other.labels && values == other.values;
    }
};

// What the studio remembers between sessions, in $XDG_CONFIG_HOME/veldra/studio.ini beside the
// data sources: the documents opened lately (the last one reopens when the studio starts
// without one) and each document's chart, by the document's absolute path.
class StudioSettings
{
public:
    static constexpr int RecentCount = 8;

    static QString fileName();

    QStringList recentDocuments() const;
    // The document goes to the top of the recent ones and is the one to reopen.
    void noteOpened(const QString &document);
    void forget(const QString &document);
    QString lastDocument() const;

    ChartSettings chart(const QString &document) const;
    void setChart(const QString &document, const ChartSettings &chart);
};
