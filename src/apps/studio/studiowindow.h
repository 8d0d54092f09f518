#pragma once

#include "queryrunner.h"

#include "host/currentrequest.h"
#include "host/parametersettings.h"
#include "host/sourcechoice.h"

#include "tessaly/containersite.h"

#include <QMainWindow>
#include <QThread>
#include <QTimer>

#include <memory>

class ChartPanel;
class ParameterPanel;
class QAction;
class QFrame;
class QLabel;
class QMenu;
class QPlainTextEdit;
class QScrollArea;
class QTableView;
class ResultTableModel;
struct ChartSettings;

namespace dataservice {
class DataService;
class LocalServiceProxy;
} // namespace dataservice
namespace tessaly {
class PadSite;
}
namespace veldra {
class TsyParamConditionModel;
class TsyParamConditionPad;
} // namespace veldra

// The desktop host of one component: its pad's face on the left, the rows the data service
// answers for the component's current request on the right, with a chart of them and the
// request itself below on demand. Any change of an input republishes the request; the query
// then runs on a thread of its own, a moment after the last change, and its rows come into the
// grid as they arrive, so typing never waits for the database. The component and the grid use
// one data service, through one proxy.
class StudioWindow final : public QMainWindow
{
    Q_OBJECT

public:
    explicit StudioWindow(QWidget *parent = nullptr);
    ~StudioWindow() override;

    // Say what is wrong through the UI service and return false when the file cannot be used;
    // the document open before stays as it was.
    bool openDocument(const QString &fileName);
    // Opens the document the studio had open last, if any; true when one opened.
    bool reopenLastDocument();
    void newDocument();
    bool saveDocument(const QString &fileName);
    // Writes the rows shown, in the order shown, as `veldra run --format FORMAT` prints them.
    bool exportRows(const QString &fileName, const QString &format);

    // Asks Save / Discard / Cancel when the document has changes that are not saved; true when
    // the document may go.
    bool maybeKeepChanges();
    bool isModified() const;

    const QString &fileName() const { return m_fileName; }
    veldra::TsyParamConditionModel &model() { return *m_component.model; }
    tessaly::PadSite &site() { return *m_component.site; }
    const ResultTableModel &results() const { return *m_results; }
    const AnswerEnd &lastAnswer() const { return m_answer; }
    ChartPanel &chart() const { return *m_chart; }
    ParameterPanel &parameters() const { return *m_parameters; }
    const host::HostSettings &parameterSettings() const { return m_settings; }
    // Checks the settings against the query (a cycle of lists is refused, naming it) and shows
    // them; false, after saying why through the UI service, when they cannot be used.
    bool setParameterSettings(const host::HostSettings &settings);
    // Runs the component on the data source name instead of the one it names (empty: its own).
    bool chooseSource(const QString &name);
    QTableView &grid() const { return *m_grid; }
    // True when the rows shown answer the latest request (or there is nothing to ask).
    bool isSettled() const { return !m_timer.isActive() && m_shown == m_asked; }

    // How long the window waits after a change before it asks; tests make it short.
    void setQueryDelay(int milliseconds) { m_timer.setInterval(milliseconds); }

    void editQuery();
    // Runs the statement with the current values as far as its first row and says through the
    // UI service what stands in its way, or that it runs.
    void checkQuery();
    void copyCells(bool withNames);

    // Room for the inputs and the rows, within the screen.
    QSize sizeHint() const override;

Q_SIGNALS:
    void runRequested(quint64 number, const QByteArray &request);
    void checkRequested(const QByteArray &request);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    struct Component
    {
        std::shared_ptr<veldra::TsyParamConditionModel> model;
        std::shared_ptr<veldra::TsyParamConditionPad> pad;
        std::shared_ptr<tessaly::PadSite> site;
        QWidget *face = nullptr;
    };
    Component createComponent();
    void host(Component component);
    static void drop(Component &component);
    static void buildFace(Component &component);
    QByteArray documentBytes() const;

    void createMenus();
    void requestChanged();
    void runQuery();
    void showRows(quint64 number, const RowChunk &rows);
    void showAnswer(quint64 number, const AnswerEnd &end);
    void showCheck(const AnswerEnd &end);
    void showNotice(const QString &text, bool failure);
    void updateChart();
    void chartChanged(const ChartSettings &settings);
    void saveChart(bool svg);
    void updateTitle();
    void fillRecentMenu();
    void open();
    void save();
    bool saveAs();
    void exportAs();
    QString chooseFile(bool saving, const QString &filters, const QString &suggested, QString *filter = nullptr);

    QByteArray currentRequestText(const host::CurrentRequest &current) const;
    void editParameterSettings();

    std::shared_ptr<const dataservice::DataService> m_service;
    std::shared_ptr<dataservice::LocalServiceProxy> m_proxy; // the one data service
    tessaly::ContainerSite m_document; // holds the component and gives it the data service
    Component m_component;

    QScrollArea *m_padArea = nullptr;
    QTableView *m_grid = nullptr;
    ResultTableModel *m_results = nullptr;
    QFrame *m_noticePanel = nullptr;
    QLabel *m_notice = nullptr;
    ChartPanel *m_chart = nullptr;
    ParameterPanel *m_parameters = nullptr;
    host::HostSettings m_settings; // the document's host-level parameter settings
    host::SourceChoice m_source;
    QPlainTextEdit *m_requestText = nullptr;
    QLabel *m_status = nullptr;
    QLabel *m_where = nullptr; // where the document is saved
    QMenu *m_recent = nullptr;
    QAction *m_showRequest = nullptr;
    QAction *m_showChart = nullptr;

    QThread m_thread;
    QueryRunner *m_runner = nullptr;
    QTimer m_timer;
    QTimer m_chartTimer; // the chart follows the rows a moment later, not at every part
    quint64 m_asked = 0;
    quint64 m_shown = 0;
    AnswerEnd m_answer;
    QString m_fileName;
    QByteArray m_savedBytes; // the document as it was opened or last saved
    bool m_queryChanged = false; // the query was edited since the document was opened or saved
};
