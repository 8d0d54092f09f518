#include "studiowindow.h"

#include "chartpanel.h"
#include "parameterpanel.h"
#include "parametersettingsdialog.h"
#include "resulttablemodel.h"
#include "rowexport.h"
#include "studiosettings.h"
#include "studiotext.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
#include "host/componentsession.h"
#include "host/currentrequest.h"
#include "host/runinputs.h"
#include "host/slotvalues.h"
#include "tessaly/componentdocument.h"
#include "tessaly/componentloader.h"
#include "tessaly/documentfile.h"
#include "tessaly/namemap.h"
#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/uiservice.h"
#include "tessaly/widgets/padsite.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/component/tsyparamconditionpad.h"
#include "veldra/registration/clsidlookup.h"
#include "veldra/resources/stringtable.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFrame>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

namespace {

const QString requestSlot = QStringLiteral("request");

void tell(const QString &title, const QString &text)
{
    tessaly::UiService::instance().message(text, title, tessaly::UiService::Buttons::Ok);
}

QString missingValuesText(const QList<host::MissingValue> &missing)
{
    QStringList texts;
    for (const host::MissingValue &value : missing) {
        texts.append(value.defined ? studioText(StudioText::MissingValue).arg(value.title.isEmpty() ? value.reference : value.title)
                                   : studioText(StudioText::UndefinedParameter).arg(value.reference));
    }
    return texts.join(u'\n');
}

// Why the current request may not be sent; empty when it may.
QString whyUnsent(const host::CurrentRequest &current)
{
    if (!current.missingPiece.isEmpty())
        return studioText(StudioText::NoRequest).arg(current.missingPiece);
    return missingValuesText(current.missingValues);
}

QString seconds(qint64 milliseconds)
{
    return QLocale().toString(double(milliseconds) / 1000, 'f', milliseconds < 10000 ? 2 : 1);
}

// The data sources of the configuration; a configuration that cannot be read is said, and the
// built-in sample serves meanwhile.
std::shared_ptr<dataservice::DataService> makeDataService()
{
    try {
        return std::make_shared<dataservice::DataService>();
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::CannotOpen), error.message());
        return std::make_shared<dataservice::DataService>(
                dataservice::DataSourceCatalog({ dataservice::DataSourceCatalog::sampleDataSource() }));
    }
}

} // namespace

StudioWindow::StudioWindow(QWidget *parent)
    : QMainWindow(parent), m_service(makeDataService()), m_proxy(std::make_shared<dataservice::LocalServiceProxy>(m_service))
{
    setObjectName(QStringLiteral("StudioWindow"));
    m_document.setDataServiceProxy(m_proxy);

    m_padArea = new QScrollArea;
    m_padArea->setObjectName(QStringLiteral("PadArea"));
    m_padArea->setAccessibleName(studioText(StudioText::InputsName));
    m_padArea->setWidgetResizable(true);

    m_results = new ResultTableModel(this);
    m_grid = new QTableView;
    m_grid->setObjectName(QStringLiteral("ResultGrid"));
    m_grid->setAccessibleName(studioText(StudioText::RowsName));
    m_grid->setModel(m_results);
    m_grid->setAlternatingRowColors(true);
    m_grid->setWordWrap(false);
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    m_grid->setSortingEnabled(true);
    // Sized once, not by measuring every row as it arrives.
    m_grid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().lineSpacing() + 6);
    connect(m_results, &ResultTableModel::sortShown, this, [this](int column, Qt::SortOrder order) {
        const QSignalBlocker blocker(m_grid->horizontalHeader());
        m_grid->horizontalHeader()->setSortIndicator(column, order);
    });
    connect(m_results, &QAbstractItemModel::layoutChanged, this, [this] { m_chartTimer.start(); });

    m_notice = new QLabel;
    m_notice->setObjectName(QStringLiteral("NoticeText"));
    m_notice->setAccessibleName(studioText(StudioText::NoticeName));
    m_notice->setWordWrap(true);
    m_notice->setTextFormat(Qt::PlainText);
    m_notice->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_noticePanel = new QFrame;
    m_noticePanel->setObjectName(QStringLiteral("NoticePanel"));
    m_noticePanel->setFrameShape(QFrame::StyledPanel);
    m_noticePanel->setAutoFillBackground(true);
    auto *noticeLayout = new QVBoxLayout(m_noticePanel);
    noticeLayout->addWidget(m_notice);
    m_noticePanel->hide();

    auto *rows = new QWidget;
    auto *rowsLayout = new QVBoxLayout(rows);
    rowsLayout->setContentsMargins(0, 0, 0, 0);
    rowsLayout->addWidget(m_noticePanel);
    rowsLayout->addWidget(m_grid, 1);

    m_chart = new ChartPanel;
    m_chart->hide();
    connect(m_chart, &ChartPanel::settingsChanged, this, &StudioWindow::chartChanged);
    connect(m_chart, &ChartPanel::saveRequested, this, &StudioWindow::saveChart);

    auto *requestBox = new QGroupBox(studioText(StudioText::RequestHeading));
    requestBox->setObjectName(QStringLiteral("RequestPane"));
    m_requestText = new QPlainTextEdit;
    m_requestText->setObjectName(QStringLiteral("RequestText"));
    m_requestText->setAccessibleName(studioText(StudioText::RequestHeading));
    m_requestText->setReadOnly(true);
    auto *requestLayout = new QVBoxLayout(requestBox);
    requestLayout->addWidget(m_requestText);
    requestBox->hide();

    auto *right = new QSplitter(Qt::Vertical);
    right->addWidget(rows);
    right->addWidget(m_chart);
    right->addWidget(requestBox);
    right->setStretchFactor(0, 3); // the rows matter most
    right->setStretchFactor(1, 2);
    right->setStretchFactor(2, 1);
    m_parameters = new ParameterPanel(m_service);
    connect(m_parameters, &ParameterPanel::sourceChosen, this, &StudioWindow::chooseSource);
    auto *parameterArea = new QScrollArea;
    parameterArea->setObjectName(QStringLiteral("ParameterArea"));
    parameterArea->setAccessibleName(studioText(StudioText::ParametersTitle));
    parameterArea->setWidgetResizable(true);
    parameterArea->setWidget(m_parameters);
    auto *left = new QSplitter(Qt::Vertical);
    left->addWidget(m_padArea);
    left->addWidget(parameterArea);
    left->setStretchFactor(0, 2);
    left->setStretchFactor(1, 3); // the lists need the room; the pad's inputs are few lines
    left->setSizes({ 2000, 3000 });
    parameterArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(left);
    splitter->addWidget(right);
    splitter->setStretchFactor(1, 1);
    setCentralWidget(splitter);

    m_status = new QLabel;
    m_status->setObjectName(QStringLiteral("StatusText"));
    statusBar()->addWidget(m_status, 1);
    m_where = new QLabel;
    m_where->setObjectName(QStringLiteral("DocumentText"));
    statusBar()->addPermanentWidget(m_where);

    createMenus();
    connect(m_showRequest, &QAction::toggled, requestBox, &QWidget::setVisible);

    m_runner = new QueryRunner(m_proxy);
    m_runner->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_runner, &QObject::deleteLater);
    connect(this, &StudioWindow::runRequested, m_runner, &QueryRunner::run);
    connect(this, &StudioWindow::checkRequested, m_runner, &QueryRunner::check);
    connect(m_runner, &QueryRunner::rowsArrived, this, &StudioWindow::showRows);
    connect(m_runner, &QueryRunner::answered, this, &StudioWindow::showAnswer);
    connect(m_runner, &QueryRunner::checked, this, &StudioWindow::showCheck);
    m_thread.start();

    m_timer.setSingleShot(true);
    m_timer.setInterval(150);
    connect(&m_timer, &QTimer::timeout, this, &StudioWindow::runQuery);
    m_chartTimer.setSingleShot(true);
    m_chartTimer.setInterval(100);
    connect(&m_chartTimer, &QTimer::timeout, this, &StudioWindow::updateChart);

    host(createComponent());
    m_savedBytes = documentBytes();
    updateTitle();
    resize(sizeHint());
}

StudioWindow::~StudioWindow()
{
    m_timer.stop();
    m_runner->supersede(0); // a run under way stops at its next row
    m_thread.quit();
    m_thread.wait();
    drop(m_component);
}

void StudioWindow::createMenus()
{
    QMenu *file = menuBar()->addMenu(studioText(StudioText::FileMenu));
    const auto add = [this](QMenu *menu, StudioText caption, const char *name, auto slot,
                            QKeySequence keys = QKeySequence()) {
        QAction *action = menu->addAction(studioText(caption), keys, this, slot);
        action->setObjectName(QLatin1String(name));
        return action;
    };
    add(file, StudioText::NewAction, "NewAction", [this] {
        if (maybeKeepChanges())
            newDocument();
    }, QKeySequence::New);
    add(file, StudioText::OpenAction, "OpenAction", &StudioWindow::open, QKeySequence::Open);
    m_recent = file->addMenu(studioText(StudioText::RecentMenu));
    m_recent->setObjectName(QStringLiteral("RecentMenu"));
    connect(m_recent, &QMenu::aboutToShow, this, &StudioWindow::fillRecentMenu);
    add(file, StudioText::SaveAction, "SaveAction", &StudioWindow::save, QKeySequence::Save);
    add(file, StudioText::SaveAsAction, "SaveAsAction", &StudioWindow::saveAs, QKeySequence::SaveAs);
    add(file, StudioText::ExportAction, "ExportAction", &StudioWindow::exportAs, QKeySequence(Qt::CTRL | Qt::Key_E));
    file->addSeparator();
    add(file, StudioText::QuitAction, "QuitAction", &QWidget::close, QKeySequence::Quit);

    QMenu *edit = menuBar()->addMenu(studioText(StudioText::EditMenu));
    add(edit, StudioText::CopyAction, "CopyAction", [this] { copyCells(false); }, QKeySequence::Copy);
    add(edit, StudioText::CopyWithNamesAction, "CopyWithNamesAction", [this] { copyCells(true); },
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_C));
    add(edit, StudioText::SelectAllAction, "SelectAllAction", [this] { m_grid->selectAll(); }, QKeySequence::SelectAll);

    QMenu *query = menuBar()->addMenu(studioText(StudioText::QueryMenu));
    query->addAction(veldra::text(veldra::StringId::SlotEditQueryDescription), this, &StudioWindow::editQuery)
            ->setObjectName(QStringLiteral("EditQueryAction"));
    add(query, StudioText::RunAgainAction, "RunAgainAction", &StudioWindow::requestChanged, QKeySequence::Refresh);
    add(query, StudioText::CheckAction, "CheckAction", &StudioWindow::checkQuery, QKeySequence(Qt::CTRL | Qt::Key_K));
    add(query, StudioText::ParameterSettingsAction, "ParameterSettingsAction", &StudioWindow::editParameterSettings);

    QMenu *view = menuBar()->addMenu(studioText(StudioText::ViewMenu));
    m_showRequest = view->addAction(studioText(StudioText::ShowRequestAction));
    m_showRequest->setObjectName(QStringLiteral("ShowRequestAction"));
    m_showRequest->setCheckable(true);
    m_showChart = view->addAction(studioText(StudioText::ShowChartAction));
    m_showChart->setObjectName(QStringLiteral("ShowChartAction"));
    m_showChart->setCheckable(true);
    connect(m_showChart, &QAction::toggled, this, [this](bool shown) {
        m_chart->setShown(shown);
        if (shown)
            updateChart();
    });
}

QSize StudioWindow::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int latin = metrics.horizontalAdvance(QLatin1Char('x'));
    const int inputs = m_padArea && m_padArea->widget() ? m_padArea->widget()->sizeHint().width() : 0;
    QSize wanted(std::max(inputs, latin * 30) + latin * 130, metrics.lineSpacing() * 56);
    if (const QScreen *screen = this->screen())
        wanted = wanted.boundedTo(screen->availableGeometry().size() * 85 / 100);
    return wanted;
}

// Made by ProgID through the registry, as a framework host makes components; before
// "veldra register" has run, the studio uses the classes it is built with.
StudioWindow::Component StudioWindow::createComponent()
{
    Component component;
    try {
        component.model = std::dynamic_pointer_cast<veldra::TsyParamConditionModel>(tessaly::ComponentLoader::createModel(
                veldra::ClsidLookup::progId(QStringLiteral(".TsyParamConditionModel"))));
        component.pad = std::dynamic_pointer_cast<veldra::TsyParamConditionPad>(tessaly::ComponentLoader::createPad(
                veldra::ClsidLookup::progId(QStringLiteral(".TsyParamConditionPad"))));
    } catch (const tessaly::Error &) {
        component.model.reset();
    }
    if (!component.model || !component.pad) {
        component.model = std::make_shared<veldra::TsyParamConditionModel>();
        component.pad = std::make_shared<veldra::TsyParamConditionPad>();
    }
    // The face stays hidden until the component is hosted, so a document that fails to open
    // never shows.
    component.face = new QWidget(this);
    component.face->setObjectName(QStringLiteral("PadFace"));
    component.face->hide();
    component.site = tessaly::PadSite::create(component.model, component.face, &m_document);
    component.site->initialize(component.pad.get(), tessaly::zetPrimitivePad::NewComponent);
    return component;
}

// The component takes the window's place of the one before, which goes.
void StudioWindow::host(Component component)
{
    drop(m_component);
    m_component = std::move(component);
    connect(m_component.site.get(), &tessaly::PadSite::watchedSlotChanged, this, [this](const QString &name) {
        if (name == requestSlot)
            requestChanged();
    });
    m_padArea->setWidget(m_component.face); // deletes the face before
    m_component.face->show();
    // The inputs are read whole, not behind a scroll bar; the rows take what is left.
    m_padArea->setMinimumWidth(m_component.face->sizeHint().width() + m_padArea->verticalScrollBar()->sizeHint().width()
                               + 2 * m_padArea->frameWidth());
}

void StudioWindow::drop(Component &component)
{
    if (!component.site)
        return;
    component.site->disconnect();
    component.site->cleanup();
    component.site.reset();
    component.pad.reset();
    component.model.reset();
}

// Building the face starts every input afresh; the inputs the document brought are put back
// afterwards, as far as they apply, and the inputs follow them.
void StudioWindow::buildFace(Component &component)
{
    const host::RunInputs document = host::RunInputs::capture(component.site->modelHost());
    component.site->setPadSlotValue(QStringLiteral("BuildUI"), true);
    host::seedRunInputs(component.site->modelHost(), document);
}

QByteArray StudioWindow::documentBytes() const
{
    try {
        return m_settings.writeInto(tessaly::ComponentDocument::save(*m_component.model, m_component.pad.get()));
    } catch (const tessaly::Error &) {
        return QByteArray(); // what cannot be written counts as changed
    }
}

bool StudioWindow::isModified() const
{
    return m_queryChanged || documentBytes() != m_savedBytes;
}

bool StudioWindow::openDocument(const QString &fileName)
{
    // Loaded into a component of its own first: one that cannot be used leaves the open one
    // (and the name File > Save writes to) as it was.
    Component next = createComponent();
    host::HostSettings settings;
    try {
        const QByteArray data = tessaly::DocumentFile::read(fileName);
        settings = host::HostSettings::read(data, fileName);
        tessaly::ComponentDocument::load(data, fileName, *next.model, next.pad.get());
        if (const auto definition = host::definitionOf(next.site->modelHost())) {
            try {
                settings.check(*definition);
            } catch (const tessaly::Error &error) {
                throw tessaly::Error(error.number(), fileName + QStringLiteral(": ") + error.message());
            }
        }
        buildFace(next);
    } catch (const tessaly::Error &error) {
        drop(next);
        delete next.face;
        tell(studioText(StudioText::CannotOpen), error.message());
        return false;
    }
    m_parameters->unbind();
    host(std::move(next));
    m_settings = settings;
    m_parameters->bind(m_component.site->modelHost(), m_settings, m_source);
    m_fileName = fileName;
    m_savedBytes = documentBytes();
    m_queryChanged = false;
    StudioSettings().noteOpened(fileName);
    const ChartSettings chart = StudioSettings().chart(fileName);
    m_chart->setSettings(chart);
    m_showChart->setChecked(chart.shown);
    updateTitle();
    requestChanged();
    return true;
}

bool StudioWindow::reopenLastDocument()
{
    const QString last = StudioSettings().lastDocument();
    if (last.isEmpty())
        return false;
    if (openDocument(last))
        return true;
    StudioSettings().forget(last);
    return false;
}

void StudioWindow::newDocument()
{
    m_parameters->unbind();
    host(createComponent());
    m_settings = {};
    m_parameters->bind(m_component.site->modelHost(), m_settings, m_source);
    m_fileName.clear();
    m_savedBytes = documentBytes();
    m_queryChanged = false;
    m_chart->setSettings({});
    m_showChart->setChecked(false);
    updateTitle();
    requestChanged();
}

bool StudioWindow::saveDocument(const QString &fileName)
{
    try {
        host::writeDocumentFile(fileName, m_settings.writeInto(tessaly::ComponentDocument::save(*m_component.model, m_component.pad.get())));
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::CannotSave), error.message());
        return false;
    }
    m_fileName = fileName;
    m_savedBytes = documentBytes();
    m_queryChanged = false;
    StudioSettings().noteOpened(fileName);
    StudioSettings().setChart(fileName, m_chart->settings()); // the chart goes with the document's new name
    updateTitle();
    return true;
}

bool StudioWindow::maybeKeepChanges()
{
    if (!isModified())
        return true;
    const QString name = m_fileName.isEmpty() ? studioText(StudioText::Untitled) : QFileInfo(m_fileName).fileName();
    switch (tessaly::UiService::instance().message(studioText(StudioText::UnsavedQuestion).arg(name),
                                                   studioText(StudioText::UnsavedTitle),
                                                   tessaly::UiService::Buttons::SaveDiscardCancel)) {
    case tessaly::UiService::Answer::Save:
        if (!m_fileName.isEmpty() && saveDocument(m_fileName))
            return true;
        return saveAs();
    case tessaly::UiService::Answer::Discard:
        return true;
    default:
        return false;
    }
}

// The wizard's Finish shows as a new definition in "SQLInfo"; the pad has then rebuilt the
// inputs afresh, and what the person had set comes back where it still applies.
void StudioWindow::editQuery()
{
    const host::RunInputs before = host::RunInputs::capture(m_component.site->modelHost());
    const QByteArray document = documentBytes();
    try {
        m_component.site->setPadSlotValue(QStringLiteral("EditQuery"), true);
        if (host::definitionOf(m_component.site->modelHost()) == before.definition)
            return;
        host::seedRunInputs(m_component.site->modelHost(), before);
        // Settings of parameters the edit took out go with them; the others stay.
        m_settings.dropOthers(*host::definitionOf(m_component.site->modelHost()));
        m_parameters->bind(m_component.site->modelHost(), m_settings, m_source);
        // Finish without a change gives an equal copy of the query: nothing to save for that.
        m_queryChanged = m_queryChanged || documentBytes() != document;
        updateTitle();
        requestChanged(); // a definition that yields no request leaves the last one published
    } catch (const tessaly::Error &error) {
        tell(veldra::text(veldra::StringId::SlotEditQueryDescription), error.message());
    }
}

void StudioWindow::requestChanged()
{
    m_parameters->parametersChanged(); // the lists that follow a changed parameter
    updateTitle();
    m_timer.start();
}

// Nothing reaches the data service while the model publishes no request or a parameter has no
// value; the panel over the grid says which, and what to do.
void StudioWindow::runQuery()
{
    host::CurrentRequest current;
    QString unsent;
    try {
        current = host::currentRequest(m_component.site->modelHost());
        unsent = whyUnsent(current);
    } catch (const tessaly::Error &error) {
        unsent = studioText(StudioText::NoRequest).arg(error.message());
    }
    m_requestText->setPlainText(current.ready() ? QString::fromUtf8(currentRequestText(current)) : unsent);
    m_runner->supersede(++m_asked);
    if (!current.ready()) {
        m_shown = m_asked;
        m_answer = {};
        m_results->clear();
        showNotice(unsent, false);
        m_status->setText(studioText(StudioText::NothingAsked));
        m_chartTimer.start();
        return;
    }
    m_status->setText(studioText(StudioText::Running));
    m_results->startAnswer();
    Q_EMIT runRequested(m_asked, currentRequestText(current));
}

// The request as it goes to the data service: to the data source chosen, if any.
QByteArray StudioWindow::currentRequestText(const host::CurrentRequest &current) const
{
    return m_source.retarget(current.text.toUtf8());
}

bool StudioWindow::chooseSource(const QString &name)
{
    try {
        m_source = name.isEmpty() ? host::SourceChoice() : host::SourceChoice::named(name, m_service->dataSources());
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::ParametersTitle), error.message());
        return false;
    }
    m_parameters->bind(m_component.site->modelHost(), m_settings, m_source);
    requestChanged();
    return true;
}

void StudioWindow::editParameterSettings()
{
    const auto definition = host::definitionOf(m_component.site->modelHost());
    if (!definition)
        return;
    ParameterSettingsDialog dialog(*definition, m_settings,
                                   [this](const host::HostSettings &settings) { return setParameterSettings(settings); }, this);
    tessaly::UiService::instance().execDialog(dialog);
}

bool StudioWindow::setParameterSettings(const host::HostSettings &settings)
{
    try {
        if (const auto definition = host::definitionOf(m_component.site->modelHost()))
            settings.check(*definition);
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::ParametersTitle), error.message());
        return false;
    }
    m_settings = settings;
    m_parameters->bind(m_component.site->modelHost(), m_settings, m_source);
    requestChanged();
    return true;
}

void StudioWindow::showRows(quint64 number, const RowChunk &rows)
{
    if (number != m_asked)
        return; // a newer request is on its way
    m_results->addRows(rows);
    m_status->setText(studioText(StudioText::RowsSoFar).arg(QLocale().toString(m_results->rows().rowCount())));
}

void StudioWindow::showAnswer(quint64 number, const AnswerEnd &end)
{
    if (number != m_asked)
        return;
    m_shown = number;
    m_answer = end;
    if (end.failed()) {
        m_results->clear();
        showNotice(studioText(StudioText::Refused).arg(tessaly::Error::hexNumber(end.errorNumber), end.error), true);
        m_status->setText(studioText(StudioText::QueryFailed));
    } else {
        if (end.truncated)
            showNotice(studioText(StudioText::CapNotice).arg(QLocale().toString(end.rows)), false);
        else
            showNotice(QString(), false);
        m_status->setText(studioText(StudioText::RowsIn).arg(QLocale().toString(end.rows), seconds(end.elapsedMs)));
    }
    m_chartTimer.start();
}

// The whole message, where it can be read and copied; empty hides the panel.
void StudioWindow::showNotice(const QString &text, bool failure)
{
    m_notice->setText(text);
    QPalette palette = m_noticePanel->palette();
    const QColor background = failure ? QColor(0xfd, 0xe2, 0xe1) : QColor(0xff, 0xf4, 0xce);
    palette.setColor(QPalette::Window, background);
    palette.setColor(QPalette::WindowText, Qt::black);
    m_noticePanel->setPalette(palette);
    m_notice->setPalette(palette);
    m_noticePanel->setVisible(!text.isEmpty());
}

void StudioWindow::checkQuery()
{
    host::CurrentRequest current;
    try {
        current = host::currentRequest(m_component.site->modelHost());
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::CheckTitle), studioText(StudioText::NoRequest).arg(error.message()));
        return;
    }
    if (!current.ready()) {
        tell(studioText(StudioText::CheckTitle), whyUnsent(current));
        return;
    }
    tessaly::UiService::instance().setBusy(true);
    Q_EMIT checkRequested(currentRequestText(current));
}

void StudioWindow::showCheck(const AnswerEnd &end)
{
    tessaly::UiService::instance().setBusy(false);
    QString text;
    if (end.failed())
        text = studioText(StudioText::CheckFails).arg(tessaly::Error::hexNumber(end.errorNumber), end.error);
    else if (end.rows == 0)
        text = studioText(StudioText::CheckRunsEmpty);
    else
        text = studioText(StudioText::CheckRuns).arg(seconds(end.elapsedMs));
    tell(studioText(StudioText::CheckTitle), text);
}

void StudioWindow::copyCells(bool withNames)
{
    QModelIndexList cells = m_grid->selectionModel()->selectedIndexes();
    if (cells.isEmpty() && m_grid->currentIndex().isValid())
        cells.append(m_grid->currentIndex());
    if (!cells.isEmpty())
        QGuiApplication::clipboard()->setText(m_results->tabSeparated(cells, withNames));
}

void StudioWindow::updateChart()
{
    if (!m_chart->isHidden())
        m_chart->setRows(m_results->rows(), m_results->order());
}

void StudioWindow::chartChanged(const ChartSettings &settings)
{
    if (!m_fileName.isEmpty())
        StudioSettings().setChart(m_fileName, settings);
}

void StudioWindow::saveChart(bool svg)
{
    const QString suggested = QFileInfo(m_fileName).completeBaseName().section(u'.', 0, 0);
    const QString fileName = chooseFile(true, studioText(svg ? StudioText::SvgFilter : StudioText::PngFilter),
                                        (suggested.isEmpty() ? QStringLiteral("chart") : suggested)
                                                + (svg ? QStringLiteral(".svg") : QStringLiteral(".png")));
    if (fileName.isEmpty())
        return;
    try {
        if (svg)
            m_chart->saveSvg(fileName);
        else
            m_chart->savePng(fileName);
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::CannotSaveChart), error.message());
    }
}

bool StudioWindow::exportRows(const QString &fileName, const QString &format)
{
    try {
        ::exportRows(m_results->rows(), m_results->order(), m_answer.truncated, m_answer.rowCap, format, fileName);
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::CannotExport), error.message());
        return false;
    }
    m_status->setText(studioText(StudioText::Exported)
                              .arg(QLocale().toString(m_results->rows().rowCount()), QDir::toNativeSeparators(fileName)));
    return true;
}

void StudioWindow::exportAs()
{
    QString filter;
    const QString suggested = QFileInfo(m_fileName).completeBaseName().section(u'.', 0, 0);
    const QString fileName = chooseFile(true, studioText(StudioText::ExportFilter),
                                        (suggested.isEmpty() ? QStringLiteral("rows") : suggested) + QStringLiteral(".csv"),
                                        &filter);
    if (fileName.isEmpty())
        return;
    const bool json = fileName.endsWith(QLatin1String(".json"), Qt::CaseInsensitive)
            || (!fileName.endsWith(QLatin1String(".csv"), Qt::CaseInsensitive) && filter.contains(QLatin1String("json")));
    exportRows(fileName, json ? QStringLiteral("json") : QStringLiteral("csv"));
}

// The file dialog runs through the UI service, as every modal dialog does; empty when the
// person cancels.
QString StudioWindow::chooseFile(bool saving, const QString &filters, const QString &suggested, QString *filter)
{
    QFileDialog dialog(this, QString(), suggested, filters);
    dialog.setObjectName(saving ? QStringLiteral("SaveFileDialog") : QStringLiteral("OpenFileDialog"));
    dialog.setAcceptMode(saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    if (!m_fileName.isEmpty())
        dialog.setDirectory(QFileInfo(m_fileName).absolutePath());
    if (saving && !suggested.isEmpty())
        dialog.selectFile(suggested);
    if (tessaly::UiService::instance().execDialog(dialog) != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return QString();
    if (filter)
        *filter = dialog.selectedNameFilter();
    return dialog.selectedFiles().constFirst();
}

// The title names the document and marks unsaved changes; the status bar says where it is
// saved, and after an edit of the query that it is not saved yet.
void StudioWindow::updateTitle()
{
    setWindowTitle(studioText(StudioText::WindowTitle)
                           .arg(m_fileName.isEmpty() ? studioText(StudioText::Untitled) : QFileInfo(m_fileName).fileName()));
    setWindowModified(isModified());
    const QString path = QDir::toNativeSeparators(QFileInfo(m_fileName).absoluteFilePath());
    if (m_fileName.isEmpty())
        m_where->setText(studioText(StudioText::NotSavedYet));
    else
        m_where->setText(studioText(m_queryChanged ? StudioText::ChangedSavesTo : StudioText::SavedIn).arg(path));
}

void StudioWindow::fillRecentMenu()
{
    m_recent->clear();
    const QStringList recent = StudioSettings().recentDocuments();
    if (recent.isEmpty())
        m_recent->addAction(studioText(StudioText::NoRecent))->setEnabled(false);
    for (qsizetype i = 0; i < recent.size(); ++i) {
        const QString path = recent.at(i);
        QAction *action = m_recent->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(path).fileName()));
        action->setToolTip(QDir::toNativeSeparators(path));
        action->setStatusTip(QDir::toNativeSeparators(path));
        connect(action, &QAction::triggered, this, [this, path] {
            if (maybeKeepChanges() && !openDocument(path))
                StudioSettings().forget(path);
        });
    }
}

void StudioWindow::open()
{
    if (!maybeKeepChanges())
        return;
    const QString fileName = chooseFile(false, studioText(StudioText::DocumentFilter), QString());
    if (!fileName.isEmpty())
        openDocument(fileName);
}

// A save that fails (the message says why) asks for another place, so the work is not left
// unsaved by a bad path.
void StudioWindow::save()
{
    if (m_fileName.isEmpty() || !saveDocument(m_fileName))
        saveAs();
}

bool StudioWindow::saveAs()
{
    QString fileName = m_fileName;
    do {
        fileName = chooseFile(true, studioText(StudioText::DocumentFilter), fileName);
    } while (!fileName.isEmpty() && !saveDocument(fileName));
    return !fileName.isEmpty();
}

void StudioWindow::closeEvent(QCloseEvent *event)
{
    if (!maybeKeepChanges()) {
        event->ignore();
        return;
    }
    m_timer.stop();
    event->accept();
}
