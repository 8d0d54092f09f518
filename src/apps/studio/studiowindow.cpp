#include "studiowindow.h"

#include "queryrunner.h"
#include "resulttablemodel.h"
#include "studiotext.h"

#include "dataservice/dataservice.h"
#include "dataservice/localserviceproxy.h"
#include "host/currentrequest.h"
#include "host/runinputs.h"
#include "host/slotvalues.h"
#include "tessaly/componentdocument.h"
#include "tessaly/componentloader.h"
#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/request.h"
#include "tessaly/uiservice.h"
#include "tessaly/variant.h"
#include "tessaly/widgets/padsite.h"
#include "veldra/component/tsyparamconditionmodel.h"
#include "veldra/component/tsyparamconditionpad.h"
#include "veldra/registration/clsidlookup.h"
#include "veldra/resources/stringtable.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QVBoxLayout>

namespace {

const QString requestSlot = QStringLiteral("request");

void tell(const QString &title, const tessaly::Error &error)
{
    tessaly::UiService::instance().message(error.message(), title, tessaly::UiService::Buttons::Ok);
}

QString missingValuesText(const QList<host::MissingValue> &missing)
{
    QStringList texts;
    for (const host::MissingValue &value : missing) {
        texts.append(value.defined ? studioText(StudioText::MissingValue).arg(value.title.isEmpty() ? value.reference : value.title)
                                   : studioText(StudioText::UndefinedParameter).arg(value.reference));
    }
    return texts.join(u' ');
}

} // namespace

StudioWindow::StudioWindow(QWidget *parent) : QMainWindow(parent)
{
    qRegisterMetaType<QueryResult>();
    setObjectName(QStringLiteral("StudioWindow"));
    m_document.setDataServiceProxy(
            std::make_shared<dataservice::LocalServiceProxy>(std::make_shared<dataservice::DataService>()));

    auto *area = new QScrollArea;
    area->setObjectName(QStringLiteral("PadArea"));
    area->setWidgetResizable(true);
    m_face = new QWidget;
    m_face->setObjectName(QStringLiteral("PadFace"));
    area->setWidget(m_face);

    m_results = new ResultTableModel(this);
    m_grid = new QTableView;
    m_grid->setObjectName(QStringLiteral("ResultGrid"));
    m_grid->setModel(m_results);
    m_grid->setAlternatingRowColors(true);
    m_grid->horizontalHeader()->setStretchLastSection(true);

    auto *requestBox = new QGroupBox(studioText(StudioText::RequestHeading));
    requestBox->setObjectName(QStringLiteral("RequestPane"));
    m_requestText = new QPlainTextEdit;
    m_requestText->setObjectName(QStringLiteral("RequestText"));
    m_requestText->setReadOnly(true);
    auto *requestLayout = new QVBoxLayout(requestBox);
    requestLayout->addWidget(m_requestText);
    requestBox->hide();

    auto *right = new QSplitter(Qt::Vertical);
    right->addWidget(m_grid);
    right->addWidget(requestBox);
    right->setStretchFactor(0, 3); // the rows matter more than the request
    right->setStretchFactor(1, 1);
    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(area);
    splitter->addWidget(right);
    splitter->setStretchFactor(1, 1);
    setCentralWidget(splitter);

    m_status = new QLabel;
    m_status->setObjectName(QStringLiteral("StatusText"));
    statusBar()->addWidget(m_status, 1);
    m_where = new QLabel;
    m_where->setObjectName(QStringLiteral("DocumentText"));
    statusBar()->addPermanentWidget(m_where);

    QMenu *file = menuBar()->addMenu(studioText(StudioText::FileMenu));
    file->addAction(studioText(StudioText::OpenAction), QKeySequence::Open, this, &StudioWindow::open)
            ->setObjectName(QStringLiteral("OpenAction"));
    file->addAction(studioText(StudioText::SaveAction), QKeySequence::Save, this, &StudioWindow::save)
            ->setObjectName(QStringLiteral("SaveAction"));
    file->addAction(studioText(StudioText::SaveAsAction), QKeySequence::SaveAs, this, &StudioWindow::saveAs)
            ->setObjectName(QStringLiteral("SaveAsAction"));
    file->addSeparator();
    file->addAction(studioText(StudioText::QuitAction), QKeySequence::Quit, this, &QWidget::close)
            ->setObjectName(QStringLiteral("QuitAction"));
    QMenu *query = menuBar()->addMenu(studioText(StudioText::QueryMenu));
    query->addAction(veldra::text(veldra::StringId::SlotEditQueryDescription), this, &StudioWindow::editQuery)
            ->setObjectName(QStringLiteral("EditQueryAction"));
    m_showRequest = query->addAction(studioText(StudioText::ShowRequestAction));
    m_showRequest->setObjectName(QStringLiteral("ShowRequestAction"));
    m_showRequest->setCheckable(true);
    connect(m_showRequest, &QAction::toggled, requestBox, &QWidget::setVisible);

    m_runner = new QueryRunner;
    m_runner->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_runner, &QObject::deleteLater);
    connect(this, &StudioWindow::runRequested, m_runner, &QueryRunner::run);
    connect(m_runner, &QueryRunner::answered, this, &StudioWindow::showAnswer);
    m_thread.start();

    m_timer.setSingleShot(true);
    m_timer.setInterval(150);
    connect(&m_timer, &QTimer::timeout, this, &StudioWindow::runQuery);

    createComponent();
    buildFace();
    updateTitle();
    resize(900, 560);
}

StudioWindow::~StudioWindow()
{
    m_timer.stop();
    m_thread.quit();
    m_thread.wait();
    dropComponent();
}

// Made by ProgID through the registry, as a framework host makes components; before
// "veldra register" has run, the studio uses the classes it is built with.
void StudioWindow::createComponent()
{
    try {
        m_model = std::dynamic_pointer_cast<veldra::TsyParamConditionModel>(tessaly::ComponentLoader::createModel(
                veldra::ClsidLookup::progId(QStringLiteral(".TsyParamConditionModel"))));
        m_pad = std::dynamic_pointer_cast<veldra::TsyParamConditionPad>(tessaly::ComponentLoader::createPad(
                veldra::ClsidLookup::progId(QStringLiteral(".TsyParamConditionPad"))));
    } catch (const tessaly::Error &) {
        m_model.reset();
    }
    if (!m_model || !m_pad) {
        m_model = std::make_shared<veldra::TsyParamConditionModel>();
        m_pad = std::make_shared<veldra::TsyParamConditionPad>();
    }
    m_site = tessaly::PadSite::create(m_model, m_face, &m_document);
    connect(m_site.get(), &tessaly::PadSite::watchedSlotChanged, this, [this](const QString &name) {
        if (name == requestSlot)
            requestChanged();
    });
    m_site->initialize(m_pad.get(), tessaly::zetPrimitivePad::NewComponent);
}

void StudioWindow::dropComponent()
{
    if (!m_site)
        return;
    m_site->disconnect(this);
    m_site->cleanup();
    m_site.reset();
    m_pad.reset();
    m_model.reset();
}

// Building the face starts every input afresh; the inputs the document brought are put back
// afterwards, as far as they apply, and the inputs follow them.
void StudioWindow::buildFace()
{
    const host::RunInputs document = host::RunInputs::capture(m_site->modelHost());
    m_site->setPadSlotValue(QStringLiteral("BuildUI"), true);
    host::seedRunInputs(m_site->modelHost(), document);
}

bool StudioWindow::openDocument(const QString &fileName)
{
    try {
        // Read it aside first, so a document that cannot be used leaves the current one alone.
        veldra::TsyParamConditionModel probe;
        tessaly::ComponentDocument::load(fileName, probe);
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::CannotOpen), error);
        return false;
    }
    dropComponent();
    createComponent();
    try {
        tessaly::ComponentDocument::load(fileName, *m_model, m_pad.get());
        buildFace();
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::CannotOpen), error);
    }
    m_fileName = fileName;
    m_changed = false;
    updateTitle();
    requestChanged();
    return true;
}

bool StudioWindow::saveDocument(const QString &fileName)
{
    try {
        tessaly::ComponentDocument::save(fileName, *m_model, m_pad.get());
    } catch (const tessaly::Error &error) {
        tell(studioText(StudioText::CannotSave), error);
        return false;
    }
    m_fileName = fileName;
    m_changed = false;
    updateTitle();
    return true;
}

// The wizard's Finish shows as a new definition in "SQLInfo"; the pad has then rebuilt the
// inputs afresh, and what the person had set comes back where it still applies.
void StudioWindow::editQuery()
{
    const host::RunInputs before = host::RunInputs::capture(m_site->modelHost());
    try {
        m_site->setPadSlotValue(QStringLiteral("EditQuery"), true);
        if (host::definitionOf(m_site->modelHost()) == before.definition)
            return;
        host::seedRunInputs(m_site->modelHost(), before);
        m_changed = true;
        updateTitle();
        requestChanged(); // a definition that yields no request leaves the last one published
    } catch (const tessaly::Error &error) {
        tell(veldra::text(veldra::StringId::SlotEditQueryDescription), error);
    }
}

void StudioWindow::requestChanged()
{
    m_timer.start();
}

// Nothing reaches the data service while the model publishes no request or a parameter has no
// value; the status bar says which, and what to do.
void StudioWindow::runQuery()
{
    host::CurrentRequest current;
    QString unsent;
    try {
        current = host::currentRequest(m_site->modelHost());
        unsent = !current.missingPiece.isEmpty() ? studioText(StudioText::NoRequest).arg(current.missingPiece)
                                                 : missingValuesText(current.missingValues);
    } catch (const tessaly::Error &error) {
        unsent = studioText(StudioText::NoRequest).arg(error.message());
    }
    m_requestText->setPlainText(current.ready() ? current.text : unsent);
    ++m_asked;
    if (!current.ready()) {
        m_shown = m_asked;
        m_results->setResult({});
        m_status->setText(unsent);
        return;
    }
    m_status->setText(studioText(StudioText::Running));
    Q_EMIT runRequested(m_asked, current.text);
}

void StudioWindow::showAnswer(quint64 number, const QueryResult &result)
{
    if (number != m_asked)
        return; // a newer request is on its way
    m_shown = number;
    if (!result.error.isEmpty()) {
        m_results->setResult({});
        m_status->setText(studioText(StudioText::Refused).arg(result.error));
        return;
    }
    m_results->setResult(result);
    m_status->setText(studioText(result.truncated ? StudioText::RowsCut : StudioText::RowCount).arg(result.rows.size()));
}

// The title names the document; the status bar says where it is saved, and after an edit of
// the query that it is not saved yet.
void StudioWindow::updateTitle()
{
    setWindowTitle(studioText(StudioText::WindowTitle)
                           .arg(m_fileName.isEmpty() ? studioText(StudioText::Untitled) : QFileInfo(m_fileName).fileName()));
    const QString path = QDir::toNativeSeparators(QFileInfo(m_fileName).absoluteFilePath());
    if (m_fileName.isEmpty())
        m_where->setText(studioText(StudioText::NotSavedYet));
    else
        m_where->setText(studioText(m_changed ? StudioText::ChangedSavesTo : StudioText::SavedIn).arg(path));
}

void StudioWindow::open()
{
    const QString fileName = QFileDialog::getOpenFileName(this, QString(), QFileInfo(m_fileName).path(),
                                                          studioText(StudioText::DocumentFilter));
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

void StudioWindow::saveAs()
{
    QString fileName = m_fileName;
    do {
        fileName = QFileDialog::getSaveFileName(this, QString(), fileName, studioText(StudioText::DocumentFilter));
    } while (!fileName.isEmpty() && !saveDocument(fileName));
}

void StudioWindow::closeEvent(QCloseEvent *event)
{
    m_timer.stop();
    event->accept();
}
