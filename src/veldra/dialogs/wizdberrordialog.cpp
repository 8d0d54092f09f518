#include "veldra/dialogs/wizdberrordialog.h"

#include "tessaly/error.h"
#include "tessaly/uiservice.h"
#include "tessaly/widgets/childsignals.h"
#include "veldra/dialogs/formhelpers.h"
#include "veldra/resources/extratext.h"
#include "veldra/resources/stringtable.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace veldra {

namespace {
// Read-only rather than labels: a user can select and copy the names into a report.
QLineEdit *newValueField(const QString &name, QLabel *label, QWidget *parent)
{
    QLineEdit *field = form::newLineEdit(name, parent, 44, label);
    field->setReadOnly(true);
    return field;
}
} // namespace

WizDBErrorDialog::WizDBErrorDialog(QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("WizDBErrorDialog"));
    setWindowTitle(text(StringId::DBErrorDialogCaption));

    auto *icon = new QLabel(this);
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical, nullptr, this).pixmap(iconSize));
    icon->setAlignment(Qt::AlignTop);

    m_label = form::newLabel(QStringLiteral("Label"), StringId::DBErrorDialogLabel, this);
    m_label->setWordWrap(true);
    QFont emphasised = m_label->font();
    emphasised.setBold(true);
    m_label->setFont(emphasised);

    auto *grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    const auto addRow = [&](const QString &labelName, StringId caption, const QString &fieldName) {
        QLabel *label = form::newLabel(labelName, caption, this);
        QLineEdit *field = newValueField(fieldName, label, this);
        const int row = grid->rowCount();
        grid->addWidget(label, row, 0);
        grid->addWidget(field, row, 1);
        return field;
    };
    m_provider = addRow(QStringLiteral("ProviderLabel"), StringId::DBErrorProviderLabel, QStringLiteral("ProviderText"));
    m_dataSource = addRow(QStringLiteral("DSNLabel"), StringId::DBErrorDSNLabel, QStringLiteral("DSNText"));
    m_catalog = addRow(QStringLiteral("CatalogLabel"), StringId::DBErrorCatalogLabel, QStringLiteral("CatalogText"));
    m_table = addRow(QStringLiteral("TableLabel"), StringId::DBErrorTableLabel, QStringLiteral("TableText"));
    m_errorCode = addRow(QStringLiteral("ErrorCodeLabel"), StringId::DBErrorCodeLabel, QStringLiteral("ErrorCodeText"));
    // Ours, beside the system's fields: what the service said, which the code alone does not.
    m_reasonLabel = new QLabel(extraText(ExtraText::ReasonLabel), this);
    m_reasonLabel->setObjectName(QStringLiteral("ReasonLabel"));
    m_reasonLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_reason = new QPlainTextEdit(this);
    m_reason->setObjectName(QStringLiteral("ReasonText"));
    m_reason->setReadOnly(true);
    m_reason->setMinimumWidth(form::textWidth(m_reason, 44));
    m_reason->setFixedHeight(m_reason->fontMetrics().lineSpacing() * 4);
    m_reasonLabel->setBuddy(m_reason);
    const int reasonRow = grid->rowCount();
    grid->addWidget(m_reasonLabel, reasonRow, 0);
    grid->addWidget(m_reason, reasonRow, 1);
    setReason(QString());

    QDialogButtonBox *buttons = form::newButtonBox(this);
    QPushButton *ok = form::addButton(buttons, QStringLiteral("OKButton"), StringId::DBErrorOKButton,
                                      QDialogButtonBox::AcceptRole);
    ok->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    // Has never had an action; it is there because users know the dialog with it.
    QPushButton *detail = form::addButton(buttons, QStringLiteral("DetailButton"), StringId::DBErrorDetailButton,
                                          QDialogButtonBox::ActionRole);
    detail->setAutoDefault(false);

    auto *text = new QVBoxLayout;
    text->addWidget(m_label);
    text->addSpacing(6);
    text->addLayout(grid);

    auto *top = new QHBoxLayout;
    top->addWidget(icon);
    top->addSpacing(8);
    top->addLayout(text, 1);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addSpacing(6);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetMinimumSize);
    ok->setFocus();
}

void WizDBErrorDialog::setMessage(const QString &message)
{
    m_label->setText(message);
}

void WizDBErrorDialog::setErrorCode(const QString &code)
{
    m_errorCode->setText(code);
    m_errorCode->setCursorPosition(0);
}

void WizDBErrorDialog::setProvider(const QString &provider)
{
    m_provider->setText(provider);
    m_provider->setCursorPosition(0);
}

void WizDBErrorDialog::setDataSource(const QString &dsn)
{
    m_dataSource->setText(dsn);
    m_dataSource->setCursorPosition(0);
}

void WizDBErrorDialog::setCatalog(const QString &catalog)
{
    m_catalog->setText(catalog);
    m_catalog->setCursorPosition(0);
}

void WizDBErrorDialog::setTable(const QString &table)
{
    m_table->setText(table);
    m_table->setCursorPosition(0);
}

void WizDBErrorDialog::setReason(const QString &reason)
{
    m_reason->setPlainText(reason);
    m_reasonLabel->setVisible(!reason.isEmpty());
    m_reason->setVisible(!reason.isEmpty());
}

void showDatabaseError(const DatabaseErrorReport &report)
{
    tessaly::UiService &ui = tessaly::UiService::instance();
    if (!ui.showsWindows()) {
        reportDatabaseErrorAsText(report);
        return;
    }
    WizDBErrorDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(text(StringId::DatabaseErrorTitle));
    dialog.setMessage(text(StringId::DatabaseErrorMessage));
    dialog.setErrorCode(tessaly::Error::hexNumber(report.errorNumber));
    dialog.setProvider(report.provider);
    dialog.setDataSource(report.dsn);
    dialog.setCatalog(report.catalog);
    dialog.setTable(report.table);
    dialog.setReason(report.message);
    ui.execDialog(dialog);
}

WizDBErrorDialog::~WizDBErrorDialog()
{
    // What the controls say as they go is no action of the person.
    tessaly::detachChildSignals(this);
}

} // namespace veldra
