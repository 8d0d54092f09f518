#include "chartpanel.h"

#include "rowstore.h"
#include "studiotext.h"

#include "tessaly/error.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QBuffer>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineSeries>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSvgGenerator>
#include <QValueAxis>

#include <cmath>

namespace {

// Labels along a line's axis: enough to find one's way, few enough to read.
constexpr int lineAxisLabels = 10;

// An axis takes each label once; a label seen before gets invisible marks to stay apart.
QStringList distinct(const QStringList &labels)
{
    QHash<QString, int> seen;
    QStringList result;
    result.reserve(labels.size());
    for (const QString &label : labels) {
        const int before = seen[label]++;
        result.append(before == 0 ? label : label + QString(before, QChar(0x200B)));
    }
    return result;
}

QString labelText(const RowStore &rows, qsizetype row, int column)
{
    if (column < 0)
        return QString::number(row + 1);
    switch (rows.kind(row, column)) {
    case RowStore::Kind::Null: return QStringLiteral("NULL");
    case RowStore::Kind::Blob: return QStringLiteral("BLOB");
    default: return QString::fromUtf8(rows.bytes(row, column));
    }
}

// A caption without its mnemonic ("(&V)" in Japanese, "&" in English) and its colon.
QString plainCaption(QString caption)
{
    static const QRegularExpression mnemonic(QStringLiteral("\\(&.\\)|&|:$"));
    return caption.remove(mnemonic).trimmed();
}

// The first column of text whose values tell the rows apart, else the first of text, else the
// first column.
QString firstLabelColumn(const RowStore &rows, const QStringList &numeric)
{
    QString firstText;
    for (int column = 0; column < rows.columnCount(); ++column) {
        if (numeric.contains(rows.columnName(column)))
            continue;
        if (firstText.isEmpty())
            firstText = rows.columnName(column);
        for (qsizetype row = 1; row < rows.rowCount(); ++row) {
            if (rows.bytes(row, column) != rows.bytes(0, column))
                return rows.columnName(column);
        }
    }
    return firstText.isEmpty() ? rows.columnName(0) : firstText;
}

void writeFile(const QString &fileName, const QByteArray &data)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size() || !file.commit())
        throw tessaly::Error(tessaly::ErrorNumber::FileAccess, QStringLiteral("%1: %2").arg(fileName, file.errorString()));
}

} // namespace

ChartData ChartData::of(const RowStore &rows, const std::vector<quint32> &order, const ChartSettings &settings,
                        qsizetype maxRows)
{
    ChartData data;
    data.rowsTotal = rows.rowCount();
    const qsizetype count = std::min(maxRows, rows.rowCount());
    const int labelColumn = int(rows.columnNames().indexOf(settings.labels.toUtf8()));
    const auto storeRow = [&order](qsizetype row) { return order.empty() ? row : qsizetype(order[size_t(row)]); };
    data.labels.reserve(count);
    for (qsizetype row = 0; row < count; ++row)
        data.labels.append(labelText(rows, storeRow(row), labelColumn));
    for (const QString &name : settings.values) {
        const int column = int(rows.columnNames().indexOf(name.toUtf8()));
        if (column < 0 || !rows.holdsNumbers(column))
            continue;
        Series series{ name, {} };
        series.points.reserve(size_t(count));
        for (qsizetype row = 0; row < count; ++row) {
            const double value = rows.number(storeRow(row), column);
            if (!std::isnan(value))
                series.points.emplace_back(double(row), value);
        }
        data.series.append(std::move(series));
    }
    return data;
}

ChartPanel::ChartPanel(QWidget *parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("ChartPanel"));
    m_kind = new QComboBox;
    m_kind->setObjectName(QStringLiteral("ChartKind"));
    m_kind->addItems({ studioText(StudioText::BarChart), studioText(StudioText::LineChart) });
    m_labels = new QComboBox;
    m_labels->setObjectName(QStringLiteral("ChartLabels"));
    m_values = new QListWidget;
    m_values->setObjectName(QStringLiteral("ChartValues"));
    m_values->setMaximumHeight(m_values->fontMetrics().lineSpacing() * 6);
    m_savePng = new QPushButton(studioText(StudioText::SavePng));
    m_savePng->setObjectName(QStringLiteral("SavePngButton"));
    m_saveSvg = new QPushButton(studioText(StudioText::SaveSvg));
    m_saveSvg->setObjectName(QStringLiteral("SaveSvgButton"));
    m_note = new QLabel;
    m_note->setObjectName(QStringLiteral("ChartNote"));
    m_note->setWordWrap(true);
    m_view = new QChartView(new QChart);
    m_view->setObjectName(QStringLiteral("ChartView"));
    m_view->setAccessibleName(studioText(StudioText::ChartName));
    m_view->setRenderHint(QPainter::Antialiasing);
    m_view->setMinimumSize(fontMetrics().averageCharWidth() * 40, fontMetrics().lineSpacing() * 12);

    auto *form = new QFormLayout;
    const auto addRow = [form](StudioText caption, QWidget *field) {
        auto *label = new QLabel(studioText(caption));
        label->setBuddy(field); // Alt and the marked letter reach the control
        field->setAccessibleName(plainCaption(label->text())); // a list is not named by its buddy
        form->addRow(label, field);
    };
    addRow(StudioText::ChartKind, m_kind);
    addRow(StudioText::ChartLabels, m_labels);
    addRow(StudioText::ChartValues, m_values);
    form->addRow(m_savePng);
    form->addRow(m_saveSvg);
    form->addRow(m_note);
    auto *choices = new QWidget;
    choices->setLayout(form);
    choices->setMaximumWidth(fontMetrics().horizontalAdvance(QLatin1Char('x')) * 48); // the chart takes the room
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(choices);
    layout->addWidget(m_view, 1);

    connect(m_kind, &QComboBox::currentIndexChanged, this, &ChartPanel::readChoice);
    connect(m_labels, &QComboBox::currentIndexChanged, this, &ChartPanel::readChoice);
    connect(m_values, &QListWidget::itemChanged, this, &ChartPanel::readChoice);
    connect(m_savePng, &QPushButton::clicked, this, [this] { Q_EMIT saveRequested(false); });
    connect(m_saveSvg, &QPushButton::clicked, this, [this] { Q_EMIT saveRequested(true); });
}

void ChartPanel::setSettings(const ChartSettings &settings)
{
    m_settings = settings;
    m_columns.clear(); // offered anew with these choices
    if (m_rows)
        setRows(*m_rows, m_order);
}

void ChartPanel::setShown(bool shown)
{
    setVisible(shown);
    if (m_settings.shown == shown)
        return;
    m_settings.shown = shown;
    Q_EMIT settingsChanged(m_settings);
}

void ChartPanel::setRows(const RowStore &rows, const std::vector<quint32> &order)
{
    m_rows = &rows;
    m_order = order;
    offerColumns();
    redraw();
}

// The choices follow the columns of the rows; what the person chose stays where it applies, and
// a document charted for the first time starts on its first text column and first column of
// numbers.
void ChartPanel::offerColumns()
{
    QStringList columns;
    QStringList numeric;
    for (int column = 0; column < m_rows->columnCount(); ++column) {
        columns.append(m_rows->columnName(column));
        if (m_rows->holdsNumbers(column))
            numeric.append(columns.last());
    }
    const QStringList offered = columns + QStringList{ QString() } + numeric;
    if (offered == m_columns)
        return;
    m_columns = offered;
    QString labels = m_settings.labels;
    if (!columns.contains(labels))
        labels = firstLabelColumn(*m_rows, numeric);
    QStringList values;
    for (const QString &value : std::as_const(m_settings.values)) {
        if (numeric.contains(value))
            values.append(value);
    }
    if (values.isEmpty()) {
        for (const QString &column : numeric) {
            if (column != labels) {
                values.append(column);
                break;
            }
        }
    }
    m_offering = true;
    m_kind->setCurrentIndex(m_settings.line ? 1 : 0);
    m_labels->clear();
    m_labels->addItems(columns);
    m_labels->setCurrentIndex(int(columns.indexOf(labels)));
    m_values->clear();
    for (const QString &column : numeric) {
        auto *item = new QListWidgetItem(column, m_values);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable | Qt::ItemIsSelectable);
        item->setCheckState(values.contains(column) ? Qt::Checked : Qt::Unchecked);
    }
    m_offering = false;
    if (!columns.isEmpty())
        readChoice();
}

void ChartPanel::readChoice()
{
    if (m_offering)
        return;
    ChartSettings chosen = m_settings;
    chosen.line = m_kind->currentIndex() == 1;
    if (m_labels->currentIndex() >= 0)
        chosen.labels = m_labels->currentText();
    QStringList values;
    for (int i = 0; i < m_values->count(); ++i) {
        if (m_values->item(i)->checkState() == Qt::Checked)
            values.append(m_values->item(i)->text());
    }
    if (m_values->count() > 0)
        chosen.values = values;
    if (chosen == m_settings)
        return;
    m_settings = chosen;
    Q_EMIT settingsChanged(m_settings);
    redraw();
}

void ChartPanel::redraw()
{
    if (!m_rows)
        return;
    const ChartData data = ChartData::of(*m_rows, m_order, m_settings,
                                         m_settings.line ? m_rows->rowCount() : ChartData::MaxBars);
    auto *chart = new QChart;
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->legend()->setVisible(data.series.size() > 1);
    auto *axisY = new QValueAxis;
    chart->addAxis(axisY, Qt::AlignLeft);
    if (data.series.size() == 1)
        axisY->setTitleText(data.series.constFirst().name);
    const QStringList labels = distinct(data.labels);
    if (m_settings.line) {
        auto *axisX = new QCategoryAxis;
        axisX->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
        const qsizetype step = std::max<qsizetype>(1, (labels.size() + lineAxisLabels - 1) / lineAxisLabels);
        for (qsizetype i = 0; i < labels.size(); i += step)
            axisX->append(labels.at(i), double(i));
        axisX->setRange(-0.5, double(labels.size()) - 0.5); // room for the first and last labels
        chart->addAxis(axisX, Qt::AlignBottom);
        for (const ChartData::Series &values : data.series) {
            auto *series = new QLineSeries;
            series->setName(values.name);
            series->replace(QList<QPointF>(values.points.begin(), values.points.end()));
            chart->addSeries(series);
            series->attachAxis(axisX);
            series->attachAxis(axisY);
        }
    } else {
        auto *axisX = new QBarCategoryAxis;
        axisX->append(labels);
        if (labels.size() > 12)
            axisX->setLabelsAngle(-60);
        chart->addAxis(axisX, Qt::AlignBottom);
        auto *series = new QBarSeries;
        for (const ChartData::Series &values : data.series) {
            auto *set = new QBarSet(values.name);
            QList<qreal> heights(labels.size(), 0);
            for (const QPointF &point : values.points)
                heights[qsizetype(point.x())] = point.y();
            set->append(heights);
            series->append(set);
        }
        chart->addSeries(series);
        series->attachAxis(axisX);
        series->attachAxis(axisY);
    }
    if (!data.series.isEmpty())
        axisY->applyNiceNumbers();
    QChart *old = m_view->chart();
    m_view->setChart(chart);
    delete old;

    if (data.series.isEmpty() && m_rows->columnCount() > 0)
        m_note->setText(studioText(StudioText::ChartNeedsNumbers));
    else if (!m_settings.line && data.rowsTotal > ChartData::MaxBars)
        m_note->setText(studioText(StudioText::ChartFirstRows).arg(ChartData::MaxBars).arg(data.rowsTotal));
    else
        m_note->clear();
    m_savePng->setEnabled(!data.series.isEmpty());
    m_saveSvg->setEnabled(!data.series.isEmpty());
}

void ChartPanel::savePng(const QString &fileName) const
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    m_view->grab().save(&buffer, "PNG");
    writeFile(fileName, data);
}

void ChartPanel::saveSvg(const QString &fileName) const
{
    QByteArray data;
    QBuffer buffer(&data);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(m_view->size());
    generator.setViewBox(m_view->rect());
    generator.setTitle(studioText(StudioText::ChartName));
    QPainter painter(&generator);
    m_view->render(&painter);
    painter.end();
    writeFile(fileName, data);
}
