#pragma once

#include "veldra/service/databaseerrorreport.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace veldra {

// Tells the user that a request for database structure failed: a message, the error code,
// where the request went and, below them, the service's reason. Filled and shown by
// showDatabaseError().
class WizDBErrorDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WizDBErrorDialog(QWidget *parent = nullptr);
    ~WizDBErrorDialog() override;

    void setMessage(const QString &message);
    void setErrorCode(const QString &code);
    void setProvider(const QString &provider);
    void setDataSource(const QString &dsn);
    void setCatalog(const QString &catalog);
    void setTable(const QString &table);
    // Shown only when there is one.
    void setReason(const QString &reason);

private:
    QLabel *m_label;
    QLineEdit *m_errorCode;
    QLineEdit *m_provider;
    QLineEdit *m_dataSource;
    QLineEdit *m_catalog;
    QLineEdit *m_table;
    QLabel *m_reasonLabel;
    QPlainTextEdit *m_reason;
};

// The desktop's DatabaseErrorReporter: shows the dialog modally through the UI service, or, on a
// host without windows, hands the same lines to UiService::report.
void showDatabaseError(const DatabaseErrorReport &report);

} // namespace veldra
