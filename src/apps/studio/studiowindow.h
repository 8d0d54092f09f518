#pragma once

#include "tessaly/containersite.h"

#include <QMainWindow>
#include <QThread>
#include <QTimer>

#include <memory>

class QAction;
class QLabel;
class QPlainTextEdit;
class QTableView;
struct QueryResult;
class QueryRunner;
class ResultTableModel;

namespace tessaly {
class PadSite;
}
namespace veldra {
class TsyParamConditionModel;
class TsyParamConditionPad;
} // namespace veldra

// The desktop host of one component: its pad's face on the left, the rows the data service
// answers for the component's current request on the right, the request itself below them on
// demand. Any change of an input republishes the request; the query then runs on a thread of
// its own, a moment after the last change, so typing never waits for the database.
class StudioWindow final : public QMainWindow
{
    Q_OBJECT

public:
    explicit StudioWindow(QWidget *parent = nullptr);
    ~StudioWindow() override;

    // Say what is wrong through the UI service and return false when the file cannot be used.
    bool openDocument(const QString &fileName);
    bool saveDocument(const QString &fileName);

    const QString &fileName() const { return m_fileName; }
    veldra::TsyParamConditionModel &model() { return *m_model; }
    tessaly::PadSite &site() { return *m_site; }
    const ResultTableModel &results() const { return *m_results; }
    // True when the rows shown answer the latest request (or there is nothing to ask).
    bool isSettled() const { return !m_timer.isActive() && m_shown == m_asked; }

    // How long the window waits after a change before it asks; tests make it short.
    void setQueryDelay(int milliseconds) { m_timer.setInterval(milliseconds); }

    void editQuery();

Q_SIGNALS:
    void runRequested(quint64 number, const QString &request);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void createComponent();
    void dropComponent();
    void buildFace();
    void requestChanged();
    void runQuery();
    void showAnswer(quint64 number, const QueryResult &result);
    void updateTitle();
    void open();
    void save();
    void saveAs();

    tessaly::ContainerSite m_document; // holds the component and gives it the data service
    std::shared_ptr<veldra::TsyParamConditionModel> m_model;
    std::shared_ptr<veldra::TsyParamConditionPad> m_pad;
    std::shared_ptr<tessaly::PadSite> m_site;

    QWidget *m_face = nullptr;
    QTableView *m_grid = nullptr;
    ResultTableModel *m_results = nullptr;
    QPlainTextEdit *m_requestText = nullptr;
    QLabel *m_status = nullptr;
    QLabel *m_where = nullptr; // where the document is saved
    QAction *m_showRequest = nullptr;

    QThread m_thread;
    QueryRunner *m_runner = nullptr;
    QTimer m_timer;
    quint64 m_asked = 0;
    quint64 m_shown = 0;
    QString m_fileName;
    bool m_changed = false; // the query was edited since the document was opened or saved
};
