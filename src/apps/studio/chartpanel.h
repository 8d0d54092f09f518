#pragma once

#include "studiosettings.h"

#include <QPointF>
#include <QWidget>

#include <vector>

class QChart;
class QChartView;
class QComboBox;
class QLabel;
class QListWidget;
class QPushButton;
class RowStore;

// What a chart of the rows shows, worked out without a window: a label per point, in the order
// the rows are shown, and per column of numbers its points (x is the position; NULL leaves a
// gap in a line and no bar).
struct ChartData
{
    QStringList labels;
    struct Series
    {
        QString name;
        std::vector<QPointF> points;
    };
    QList<Series> series;
    qsizetype rowsTotal = 0;

    // Bars for more rows than this are too thin to read: a bar chart shows the first ones.
    static constexpr qsizetype MaxBars = 200;

    static ChartData of(const RowStore &rows, const std::vector<quint32> &order, const ChartSettings &settings,
                        qsizetype maxRows);
};

// A bar or line chart of the rows shown, beside the grid: the column that labels the points and
// the columns of numbers are chosen here, kept per document by the studio, and the chart is
// saved as PNG or SVG.
class ChartPanel final : public QWidget
{
    Q_OBJECT

public:
    explicit ChartPanel(QWidget *parent = nullptr);

    // The choice to start from for a document, applied once its columns are known.
    void setSettings(const ChartSettings &settings);
    const ChartSettings &settings() const { return m_settings; }
    // Whether the panel is shown is kept with the rest of the choice.
    void setShown(bool shown);

    // Draws the rows in the order given (empty: as stored).
    void setRows(const RowStore &rows, const std::vector<quint32> &order);

    // Raise tessaly::Error when the file cannot be written.
    void savePng(const QString &fileName) const;
    void saveSvg(const QString &fileName) const;

    QChartView *view() const { return m_view; }

Q_SIGNALS:
    void settingsChanged(const ChartSettings &settings);
    void saveRequested(bool svg);

private:
    void offerColumns();
    void readChoice();
    void redraw();

    ChartSettings m_settings;
    const RowStore *m_rows = nullptr;
    std::vector<quint32> m_order;
    QStringList m_columns; // the columns the choices were made from
    bool m_offering = false;

    QComboBox *m_kind = nullptr;
    QComboBox *m_labels = nullptr;
    QListWidget *m_values = nullptr;
    QLabel *m_note = nullptr;
    QChartView *m_view = nullptr;
    QPushButton *m_savePng = nullptr;
    QPushButton *m_saveSvg = nullptr;
};
