#pragma once

#include "host/livelists.h"
#include "host/parameterchoices.h"

#include <QHash>
#include <QWidget>

#include <memory>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QVBoxLayout;

namespace dataservice {
class DataService;
}

// Beside the pad: the data source the component runs on, and for each parameter whose settings
// read its list from the data source or allow several values, a search field and the list
// (ticked items for several values). Each choice is written into the parameter's own slot;
// what to show and write comes from host::ParameterChoices, as in every host.
class ParameterPanel final : public QWidget
{
    Q_OBJECT

public:
    explicit ParameterPanel(std::shared_ptr<const dataservice::DataService> service, QWidget *parent = nullptr);

    // Shows the controls for the component's settings; every list is read again.
    void bind(tessaly::ModelHost &host, const host::HostSettings &settings, const host::SourceChoice &source);
    void unbind();
    // A parameter slot changed (through the pad or a control): the lists that depend on it are
    // read again, and a value they no longer hold gives way to their first entry.
    void parametersChanged();
    // Reads every list again and gives the relative defaults (another source, new settings).
    void reload();

    host::LiveLists &lists() { return m_lists; }

Q_SIGNALS:
    void sourceChosen(const QString &name); // empty: the component's own
    void notesChanged(const QStringList &notes);

private:
    struct Row
    {
        QString reference;
        QLineEdit *search = nullptr;
        QListWidget *list = nullptr;
        QLabel *note = nullptr;
    };

    host::ParameterChoices choices() const;
    void fillSources();
    void fill(Row &row);
    void itemChanged(Row &row, QListWidgetItem *item);
    QHash<QString, QString> parameterValues() const;
    void settle(const QStringList &changed);

    host::LiveLists m_lists;
    std::shared_ptr<const dataservice::DataService> m_service;
    tessaly::ModelHost *m_host = nullptr;
    const host::HostSettings *m_settings = nullptr;
    const host::SourceChoice *m_source = nullptr;
    QComboBox *m_sources = nullptr;
    QVBoxLayout *m_rowsLayout = nullptr;
    QWidget *m_rows = nullptr;
    QList<Row> m_rowList;
    QHash<QString, QString> m_values; // the parameter values last seen, to tell what changed
    QStringList m_notes;
    bool m_writing = false;
};
